#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Makes the installer, runs it without questions under Wine, in the prefix that WINEPREFIX names, twice, uses what it
# installed from the path, and removes it: nothing may be left but what others put there, and the path is as it was.
# usage: packaging/windows/check-installer.sh WINDOWS_BUILD
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
. packaging/windows/wine.sh
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
fail() { echo "check-installer: $*" >&2 && exit 1; }
environment='HKLM\SYSTEM\CurrentControlSet\Control\Session Manager\Environment'
variable() { wine reg query "$environment" /v "$1" 2>/dev/null | tr -d '\r' | sed -n "s/^ *$1 *REG_EXPAND_SZ *//Ip"; }
path() { variable Path; }
producers() { variable GENICAM_GENTL64_PATH; }

packaging/windows/make-installer.sh "$1" "$work/vanto-clser-win64.exe"

# Longer than the installer's own texts can be.
before="C:\\windows\\system32$(for number in $(seq 100); do printf ';C:\\programs\\number%03d' "$number"; done)"
wine reg add "$environment" /v Path /t REG_EXPAND_SZ /d "$before" /f >/dev/null 2>&1
[ "$(path)" = "$before" ] || fail "the path was not set"
[ -z "$(producers)" ] || fail "there are GenTL producers already: $(producers)"

install() { # install FOLDER: its words apart, as the installer wants its last argument
    # shellcheck disable=SC2086
    timeout 300 "$wine_programs/wine64" "$work/vanto-clser-win64.exe" /S /D=$1
    [ "$(path)" = "$before;$1\\bin" ] || fail "the path is $(path)"
    [ "$(producers)" = "$1\\bin\\vanto\\gentl" ] || fail "the folder of GenTL producers is $(producers)"
}
drive=$WINEPREFIX/drive_c
install 'C:\Vanto First'
touch "$drive/Vanto First/bin/vanto/plugins/theirs.dll"
install 'C:\Vanto Second' # removes the first
[ "$(cd "$drive/Vanto First" && find . -type f)" = ./bin/vanto/plugins/theirs.dll ] || fail "the version before is left"

# A new process gets the path of the registry; cmd finds the program there.
said=$(cd "$work" && WINEPATH=$(path) timeout 300 "$wine_programs/wine64" cmd /c 'vanto-cl --version' </dev/null | tr -d '\r')
echo "$said"
grep -q '^vanto-cl ' <<<"$said"
# What a program that takes cameras through GenTL finds by the variable; there is no camera, which doctor minds.
doctor=$(cd "$work" && WINEPATH=$(path) GENICAM_GENTL64_PATH=$(producers) timeout 300 "$wine_programs/wine64" \
    cmd /c 'vanto-cl doctor' </dev/null | tr -d '\r') || true
for state in "names the producer's folder" 'loads; interfaces: '; do
    grep -q "$state" <<<"$doctor" || fail "vanto-cl doctor does not say '$state': $doctor"
done
for file in include/vanto-*/vanto/Camera.h lib/cmake/Vanto/VantoConfig.cmake lib/libVantoApplication.dll.a \
    bin/vanto/gentl/vanto-cl.cti share/doc/vanto/licenses/gcc.txt; do
    # shellcheck disable=SC2086 # a pattern
    [ -n "$(ls "$drive/Vanto Second/"$file 2>/dev/null)" ] || fail "$file is missing"
done

timeout 300 "$wine_programs/wine64" 'C:\Vanto Second\uninstall.exe' /S
# It goes on in a copy of itself.
until=$((SECONDS + 120))
while [ -e "$drive/Vanto Second" ]; do
    [ $SECONDS -lt $until ] || fail "files are left: $(find "$drive/Vanto Second" | head)"
    sleep 0.2
done
[ "$(path)" = "$before" ] || fail "the path is not as it was: $(path)"
[ -z "$(producers)" ] || fail "a folder of GenTL producers is left: $(producers)"
if wine reg query 'HKLM\Software\Microsoft\Windows\CurrentVersion\Uninstall\Vanto' >/dev/null 2>&1; then
    fail "it is still among the programs"
fi
echo "installed, replaced and removed"
