#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Builds the tree for 64-bit Windows and runs what it can under Wine. See ./test-windows.sh --help.
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")" || exit 1
. packaging/steps.sh
. packaging/windows/wine.sh

all_stages=(libraries build tests files chain archive installer)

usage() {
    cat <<END
usage: ./test-windows.sh [STAGE...]

Installs the Debian packages that are missing, then runs the stages that are named, or all of them:
  libraries  the libraries that the tree uses, built once into $(windows_libraries)
  build      the tree with MinGW-w64, and the simulator of this machine
  tests      the unit tests under Wine; packaging/windows/left-out.txt lists which are not run, and why
  files      exports, imports and version resources of what was built
  chain      cameras on this machine's pseudo-terminals, used over COM ports
  archive    the zip archive, unpacked and used
  installer  the installer, run, used and removed
Wine gets a prefix of its own, which is removed at the end. JOBS sets how many jobs run at once.
END
}

stages=()
for argument in "$@"; do
    if [ "$argument" = -h ] || [ "$argument" = --help ]; then
        usage && exit 0
    elif [[ " ${all_stages[*]} " != *" $argument "* ]]; then
        usage >&2
        exit 2
    fi
    stages+=("$argument")
done
[ ${#stages[@]} -eq 0 ] && stages=("${all_stages[@]}")
jobs=${JOBS:-$(nproc)}
export JOBS=$jobs
VANTO_WINDOWS_LIBRARIES=$(windows_libraries)
export VANTO_WINDOWS_LIBRARIES
summary=""

stage_libraries() { packaging/windows/build-libraries.sh "$VANTO_WINDOWS_LIBRARIES"; }

quietly() { # quietly COMMAND...: shows what it printed when it fails
    local log result
    log=$(mktemp)
    "$@" >"$log" 2>&1
    result=$?
    [ $result -eq 0 ] || grep -vE '^\[[0-9]+/[0-9]+\] (Building|Linking)' "$log" | tail -n 200
    rm -f "$log"
    return $result
}

stage_build() {
    quietly cmake --preset windows && quietly cmake --build --preset windows -j "$jobs" &&
        quietly cmake --preset release && quietly cmake --build --preset release -j "$jobs"
}

stage_tests() {
    packaging/windows/run-tests.sh build/windows build/release | tee "$work/tests.log"
    local result=$?
    summary=$(tail -n 1 "$work/tests.log")
    return $result
}

stage_files() { packaging/windows/check-files.sh build/windows; }
stage_chain() { packaging/windows/check-chain.sh build/windows build/release; }
stage_installer() { packaging/windows/check-installer.sh build/windows; }
stage_archive() { packaging/windows/check-archive.sh build/windows build/release; }

start=$SECONDS
install_missing_packages build test windows || exit 1
mkdir -p build
work=$(mktemp -d)
trap 'end_wine; rm -rf "$work"' EXIT
trap 'exit 130' INT TERM HUP
for stage in "${stages[@]}"; do
    echo "== $stage"
    begun=$SECONDS
    [[ $stage == libraries || $stage == build || -n "${WINEPREFIX:-}" ]] || start_wine "$work/prefix" || exit 1
    "stage_$stage"
    result=$?
    echo "== $stage: $([ $result -eq 0 ] && echo passed || echo FAILED) in $(duration $((SECONDS - begun)))"
    if [ $result -ne 0 ]; then
        echo "test-windows.sh: FAILED in stage $stage after $(duration $((SECONDS - start)))."
        exit 1
    fi
done
echo "test-windows.sh: passed (${stages[*]}) in $(duration $((SECONDS - start))).${summary:+ $summary}"
