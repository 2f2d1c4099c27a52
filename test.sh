#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# What CI checks, in CI's order, and the longer checks behind it. See ./test.sh --help.
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"
. packaging/steps.sh

ci_stages=(format layers docs release install fuzz)
all_stages=("${ci_stages[@]}" clang asan tsan lockorder packages)

usage() {
    cat <<END
usage: ./test.sh [--quick | --full] [STAGE...]

Installs the Debian packages that the stages need and that are missing, then runs the stages that are named, or those that CI runs
(${ci_stages[*]}):
  format    clang-format over all sources
  layers    what each folder includes
  docs      links, packages and commands that the documentation names, and the reference of the public headers
  release   build with g++ and run the tests
  clang     build with clang++, warnings are errors
  asan      build with address and undefined-behaviour sanitizers and run the tests
  tsan      build with the thread sanitizer and run the tests
  lockorder build with names of locks, run the tests, and fail where threads can wait for each other in a circle
  install   what the libraries export; install into a folder, move it, and use it from there as others do
  packages  make the Debian packages, install them in an empty Debian, use and remove them
  fuzz      each fuzzing target for ${FUZZ_SECONDS:-30} seconds (FUZZ_SECONDS)
--quick runs format, layers, docs and release; --full runs all of them, which takes over an hour on two cores where the
compiler cache is empty. JOBS sets how many jobs run at once.
END
}

stages=()
for argument in "$@"; do
    case $argument in
        -h | --help) usage && exit 0 ;;
        --quick) stages+=(format layers docs release) ;;
        --full) stages+=("${all_stages[@]}") ;;
        *)
            if [[ " ${all_stages[*]} " != *" $argument "* ]]; then
                usage >&2
                exit 2
            fi
            stages+=("$argument")
            ;;
    esac
done
[ ${#stages[@]} -eq 0 ] && stages=("${ci_stages[@]}")
jobs=${JOBS:-$(nproc)}
summary=""

build() { # build PRESET [TARGET [CMAKE_ARGUMENT...]]
    cmake --preset "$1" "${@:3}" >"build/$1.log" 2>&1 &&
        cmake --build --preset "$1" -j "$jobs" --target "${2:-all}" >>"build/$1.log" 2>&1
    local result=$?
    [ $result -eq 0 ] || grep -vE '^\[[0-9]+/[0-9]+\] (Building|Linking)' "build/$1.log" | tail -n 200
    rm -f "build/$1.log"
    return $result
}

run_tests() { # run_tests PRESET [CTEST_ARGUMENT...]: runs ctest and keeps its summary for the closing line
    local log result
    log=$(mktemp)
    ctest --preset "$1" -j "$jobs" "${@:2}" >"$log" 2>&1
    result=$?
    [ $result -eq 0 ] || cat "$log"
    sed -n '/The following tests did not run/,/^$/p' "$log"
    summary="$1: $(grep -m1 'tests passed' "$log" || echo 'no test was run')"
    echo "$summary"
    grep -q 'No tests were found' "$log" && result=1
    rm -f "$log"
    return $result
}

# Those that are not added yet as well: they are part of the change.
sources() { git ls-files --cached --others --exclude-standard '*.h' '*.cpp' '*.c' | while read -r file; do [ -f "$file" ] && echo "$file"; done; }
stage_format() {
    local file wrong=()
    while read -r file; do
        clang-format --dry-run -Werror "$file" || wrong+=("$file")
    done < <(sources)
    sources | xargs cmake/check-style.py || return 1
    sources | xargs cmake/check-includes.py || return 1
    [ ${#wrong[@]} -eq 0 ] && return 0
    echo "This repairs it: clang-format -i ${wrong[*]}" >&2
    return 1
}
stage_layers() { cmake -P cmake/check-layers.cmake && cmake -P cmake/check-tests.cmake; }
stage_docs() { cmake -P cmake/check-docs.cmake && make_reference; }
make_reference() {
    local folder result
    folder=$(mktemp -d)
    VANTO_VERSION=- VANTO_REFERENCE=$folder doxygen docs/Doxyfile
    result=$?
    rm -rf "$folder"
    return $result
}
# A build tree from before the packages were there has no Python module.
build_release() { build release all -DVANTO_BUILD_PYTHON=ON; }
stage_release() { build_release && run_tests release; }
stage_clang() { build clang; }
stage_asan() { build asan all -DVANTO_BUILD_PYTHON=ON && run_tests asan; }
stage_tsan() { build tsan && run_tests tsan; }
stage_lockorder() {
    local records=build/lockorder/lock-order
    rm -rf "$records" && mkdir -p "$records"
    build lockorder && run_tests lockorder &&
        build/lockorder/bin/lock-order "$records" tests/support/lockorder/known.txt
}
stage_install() { build_release && packaging/check-abi.sh build/release && packaging/check-install.sh build/release; }
stage_packages() { packaging/make-packages.sh && packaging/check-packages.sh build/package/packages; }
stage_fuzz() {
    build clang fuzz -DVANTO_FUZZ_SECONDS="${FUZZ_SECONDS:-30}" && run_tests clang -L fuzz
}

steps_of() { # steps_of STAGE: the steps whose packages the stage needs
    case $1 in
        format) echo format ;;
        layers) echo build ;;
        docs) echo build docs ;;
        packages) echo build test python docs packages ;;
        release | install | asan) echo build test python ;;
        clang | fuzz) echo build test clang ;;
        *) echo build test ;;
    esac
}

start=$SECONDS
mapfile -t steps < <(for stage in "${stages[@]}"; do steps_of "$stage"; done | tr ' ' '\n' | sort -u)
install_missing_packages "${steps[@]}" || exit 1
mkdir -p build
summaries=()
for stage in "${stages[@]}"; do
    echo "== $stage"
    begun=$SECONDS
    summary=""
    "stage_$stage"
    result=$?
    [ -n "$summary" ] && summaries+=("$summary")
    echo "== $stage: $([ $result -eq 0 ] && echo passed || echo FAILED) in $(duration $((SECONDS - begun)))"
    if [ $result -ne 0 ]; then
        echo "test.sh: FAILED in stage $stage after $(duration $((SECONDS - start))). $(IFS='; ' && echo "${summaries[*]:-}")"
        exit 1
    fi
done
closing=$(printf '%s; ' "${summaries[@]+"${summaries[@]}"}")
echo "test.sh: passed (${stages[*]}) in $(duration $((SECONDS - start))). ${closing%; }"
