#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Runs the test programs for Windows under Wine, in the prefix that WINEPREFIX names, and compares which test cases there
# are with those of the programs for this machine. packaging/windows/left-out.txt names the cases that may be missing.
# Programs with simulated cameras have this machine's pseudo-terminals as COM ports. All programs in a prefix see the same
# ports, so those run in prefixes of their own, one after the other in each. LANES says how many prefixes there are.
# usage: packaging/windows/run-tests.sh WINDOWS_BUILD NATIVE_BUILD
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
. packaging/windows/wine.sh
windows=$(cd "$1" && pwd)
native=$(cd "$2" && pwd)
export TIME_LIMIT=${TIME_LIMIT:-900} # seconds; several times of what the slowest takes where nothing else is done
lanes=${LANES:-3}                    # such programs wait more than they compute
work=$(mktemp -d)
export work
servers=()
finish() {
    local server lane
    for server in "${servers[@]}"; do kill "$server" 2>/dev/null || true; done
    for lane in "$work"/lane*; do [ -d "$lane" ] && (WINEPREFIX=$lane end_wine) || true; done
    rm -rf "$work"
}
trap finish EXIT
mkdir "$work/windows" "$work/native" "$work/logs"

# The full names of a test program's cases.
cases() { tr -d '\r' | sed 's/  *#.*//' | awk '/^[^ ]/ { suite = $1 } /^ / { print suite $1 }'; }
export -f cases wine
export wine_programs

list_windows() { wine "$1" --gtest_list_tests 2>/dev/null | cases >"$work/windows/$(basename "$1" .exe)"; }
list_native() { "$1" --gtest_list_tests | cases >"$work/native/$(basename "$1")"; }
export -f list_windows list_native
xargs -P "${JOBS:-2}" -I{} bash -c 'list_windows {}' <"$windows/test-programs.txt"
xargs -P "${JOBS:-2}" -I{} bash -c 'list_native {}' <"$native/test-programs.txt"

# Of each line of the list: program, and a pattern of cases.
left_out() { sed -e 's/#.*//' -e '/^[[:space:]]*$/d' packaging/windows/left-out.txt; }
grep -v '^# ' packaging/windows/left-out.txt | grep -v '^$' >"$work/reasons" || true

# What is not run of a program, as its filter.
filter_of() { left_out | awk -v program="$1" '$1 == program { printf "%s%s", separator, $2; separator = ":" }'; }

run_program() { # run_program FILE FILTER
    local name log result
    name=$(basename "$1" .exe)
    log=$work/logs/$name
    (cd "$(dirname "$1")" && timeout "$TIME_LIMIT" "$wine_programs/wine64" "$1" --gtest_brief=1 \
        "--gtest_output=xml:Z:$log.xml" "--gtest_filter=*${2:+-$2}") >"$log" 2>&1 </dev/null
    result=$?
    if [ $result -eq 0 ]; then
        echo "$name: $(tr -d '\r' <"$log" | grep -E '^\[  PASSED' | tail -1)"
    else
        echo "$name: FAILED ($result)"
        tail -n 60 "$log"
        touch "$work/failed"
    fi
}
export -f run_program
filtered() { # of each program whose file is named on the standard input: its file and what is not run of it
    while read -r program; do
        printf '%s\0%s\0' "$program" "$(filter_of "$(basename "$program" .exe)")"
    done
}

# Each lane is a Windows whose COM ports are pseudo-terminals, lent by a marlow-lines of its own.
starting=()
for ((lane = 0; lane < lanes; ++lane)); do
    (start_wine "$work/lane$lane") &
    starting+=($!)
done
for process in "${starting[@]}"; do
    wait "$process" || { echo "Wine does not start" >&2 && exit 1; }
done
for ((lane = 0; lane < lanes; ++lane)); do
    "$native/bin/marlow-lines" "$work/lane$lane/dosdevices" >"$work/lines$lane" &
    servers+=($!)
    until [ -s "$work/lines$lane" ]; do
        kill -0 "${servers[-1]}" || exit 1
        sleep 0.05
    done
done
export VANTO_TEST_ROUNDS=${VANTO_TEST_ROUNDS:-100} # what starts and ends a thread or a port takes its time under Wine
# The last in the list go through the most and take the longest, so they come first.
tac "$windows/simulator-programs.txt" | filtered |
    xargs -0 -n 2 -P "$lanes" --process-slot-var=LANE bash -c '
        export WINEPREFIX=$work/lane$LANE MARLOW_LINES
        MARLOW_LINES=$(cat "$work/lines$LANE")
        run_program "$1" "$2"' run &
simulators=$!
grep -vxFf "$windows/simulator-programs.txt" "$windows/test-programs.txt" | filtered |
    xargs -0 -n 2 -P "${JOBS:-2}" bash -c 'run_program "$1" "$2"' run
wait "$simulators" || true

echo "Left out:"
sed 's/^/  /' "$work/reasons"

# A line that leaves nothing out any more hides that its case has another name now.
matches_none() { # matches_none PATTERN FILE
    local case
    while read -r case; do
        # shellcheck disable=SC2053 # a pattern
        [[ $case == $1 ]] && return 1
    done <"$2"
    return 0
}
while read -r program pattern _; do
    if matches_none "$pattern" "$work/native/$program"; then
        echo "left out, but not there: $program $pattern"
        touch "$work/failed"
    fi
done < <(left_out)

# Each case of this machine's programs was run under Wine or is left out.
total=0
missing=0
lists=("$work"/native/*)
set -f # patterns of cases are no patterns of files
for list in "${lists[@]}"; do
    name=$(basename "$list")
    filter=$(filter_of "$name")
    while read -r case; do
        total=$((total + 1))
        for pattern in ${filter//:/ }; do
            # shellcheck disable=SC2053 # the list holds patterns
            [[ $case == $pattern ]] && continue 2
        done
        if ! grep -qxF -- "$case" "$work/windows/$name" 2>/dev/null; then
            echo "neither run nor left out: $name $case"
            missing=$((missing + 1))
        fi
    done <"$list"
done
set +f
ran=$(cat "$work"/logs/*.xml | sed -n 's/.*<testsuites tests="\([0-9]*\)".*/\1/p' | awk '{ sum += $1 } END { print sum + 0 }')
skipped=$(cat "$work"/logs/*.xml | grep -c 'result="skipped"' || true)
[ "$missing" -eq 0 ] && [ ! -e "$work/failed" ] && [ "$ran" -gt 0 ] && result=passed || result=FAILED
echo "windows: $ran test cases $result under Wine ($skipped skipped themselves); this machine has $total"
[ "$result" = passed ]
