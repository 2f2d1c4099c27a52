#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Compares what the libraries of a build tree export with the lists in packaging/abi: functions, data, tables and type
# information that other programs can link. docs/versions.md says what a difference means.
# usage: packaging/check-abi.sh [--update] BUILD_FOLDER
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
update=
[ "$1" = --update ] && update=yes && shift
build=$(cd "$1" && pwd)
libraries=(GCBase GenApi CLProtocol VantoBase VantoImage VantoApplication)

# Weak functions are copies of what headers define; whether a library has one is the compiler's affair.
exports_linux() { nm -D --defined-only "$1" | awk '$2 ~ /^[TDBRV]$/ { print $3 }'; }
exports_windows() {
    x86_64-w64-mingw32-objdump -p "$1" | sed -n '/\[Ordinal\/Name Pointer\] Table/,/^$/p' | sed -n 's/^\t\[ *[0-9]*\] //p'
}
if [ -e "$build/bin/GCBase.dll" ]; then
    system=windows
    library() { echo "$build/bin/$1.dll"; }
else
    system=linux
    library() { find "$build" -name "lib$1.so" -not -path '*/tests/*' | head -1; }
fi

lists=packaging/abi/$system
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
[ -z "$update" ] || mkdir -p "$lists"
result=0
for name in "${libraries[@]}"; do
    "exports_$system" "$(library "$name")" | LC_ALL=C sort -u >"$work/$name.txt"
    [ -s "$work/$name.txt" ] || { echo "check-abi: $name exports nothing" >&2 && exit 1; }
    if [ -n "$update" ]; then
        cp "$work/$name.txt" "$lists/$name.txt"
    elif ! diff -u "$lists/$name.txt" "$work/$name.txt" >"$work/differences"; then
        echo "check-abi: what $name exports differs from $lists/$name.txt (- is missing, + is new):" >&2
        grep '^[-+][^-+]' "$work/differences" | c++filt >&2
        result=1
    fi
done
[ $result -eq 0 ] || echo "check-abi: packaging/check-abi.sh --update $1 writes the lists anew; see docs/versions.md" >&2
[ $result -ne 0 ] || echo "${#libraries[@]} libraries export what $lists says"
exit $result
