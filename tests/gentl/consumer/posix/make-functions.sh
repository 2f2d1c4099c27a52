#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
# Writes functions, in assembly language, with the names of all C++ functions and tables that are in a producer's file.
# Each ends the program. Left out is what the other files have or import that are loaded beside it, and what the system's
# libraries have.
# usage: make-functions.sh PRODUCER FILE OTHER...
set -eu
producer=$1
output=$2
shift 2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
names() { awk '{ print $NF }' | sed 's/@.*//'; }
{
    for other in "$@"; do nm -D "$other" | names; done
    ldd "$producer" "$@" | awk '$2 == "=>" { print $3 }' | sort -u | while read -r library; do
        nm -D --defined-only "$library" | names
    done
} | LC_ALL=C sort -u >"$work/others"
nm --defined-only "$producer" | names | grep -E '^_Z[A-Za-z0-9_]+$' | LC_ALL=C sort -u >"$work/names"
LC_ALL=C comm -23 "$work/names" "$work/others" >"$work/clashing"
[ "$(wc -l <"$work/clashing")" -gt 1000 ] || { echo "the producer has no names of functions: is it stripped?" >&2 && exit 1; }
{
    printf '%s\n' '.text' '.hidden vanto_clash' '.globl vanto_clash' 'vanto_clash: call abort@plt'
    sed 's/.*/.globl &\n.type &, @function\n.set &, vanto_clash/' "$work/clashing"
    echo '.section .note.GNU-stack, "", @progbits'
} >"$output"
