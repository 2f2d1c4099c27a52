#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Makes the installer for Windows from a build tree:
#     packaging/windows/make-installer.sh WINDOWS_BUILD [OUTPUT.exe]
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
build=$(cd "$1" && pwd)
version=$(sed -n 's/^CMAKE_PROJECT_VERSION:STATIC=//p' "$build/CMakeCache.txt")
output=$(realpath -m "${2:-$build/vanto-clser-$version-win64.exe}")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

cmake --install "$build" --prefix "$work/tree" --strip >/dev/null
mkdir "$work/tree/libexec"
x86_64-w64-mingw32-gcc -std=c11 -Wall -Wextra -Werror -O2 -s -municode -static \
    packaging/windows/installer/path-entry.c -o "$work/tree/libexec/path-entry.exe"

# The uninstaller removes exactly what the installer wrote, deepest first.
(cd "$work/tree" && find . -type f -printf 'Delete "$INSTDIR\\%P"\n' && find . -mindepth 1 -depth -type d -printf 'RMDir "$INSTDIR\\%P"\n') |
    sed 's#/#\\#g' >"$work/files.nsh"
makensis -V2 -INPUTCHARSET UTF8 "-DVERSION=$version" "-DTREE=$work/tree" "-DOUTPUT=$output" "-DFILES=$work/files.nsh" \
    packaging/windows/installer/vanto.nsi
echo "$output: $(stat -c %s "$output") bytes"
