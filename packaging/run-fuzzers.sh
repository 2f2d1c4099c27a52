#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Runs each fuzzing target for some seconds, seeds first. usage: packaging/run-fuzzers.sh FOLDER_OF_TARGETS SECONDS
set -euo pipefail
shopt -s nullglob
sources=(fuzz/*_fuzz.cpp fuzz/*/*_fuzz.cpp)
if [ ${#sources[@]} -eq 0 ]; then
    echo "fuzz/ holds no target: nothing was fuzzed"
    exit 0
fi
targets=("$1"/*_fuzz)
if [ ${#targets[@]} -eq 0 ]; then
    echo "no fuzzing target in $1" >&2
    exit 1
fi
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
for target in "${targets[@]}"; do
    name=$(basename "$target")
    seeds="fuzz/seeds/${name%_fuzz}"
    mkdir -p "$work/$name"
    arguments=("$work/$name")
    [ -d "$seeds" ] && arguments+=("$seeds")
    echo "$name: $2 s"
    if ! "$target" -max_total_time="$2" -timeout=20 -rss_limit_mb=2048 -artifact_prefix="$PWD/" "${arguments[@]}" \
        >"$work/$name.log" 2>&1; then
        tail -n 100 "$work/$name.log" >&2
        exit 1
    fi
    tail -n 1 "$work/$name.log"
done
