#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Makes the archive for Windows users, unpacks it into a folder of Wine, in the prefix that WINEPREFIX names, and lists a
# simulated camera of this machine from there, with the program and with an example that is built with what it has.
# usage: packaging/windows/check-archive.sh WINDOWS_BUILD NATIVE_BUILD
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
. packaging/windows/wine.sh
windows=$(cd "$1" && pwd)
native=$(cd "$2/bin" && pwd)
folder=$(mktemp -d)
simulator=
trap '[ -z "$simulator" ] || kill "$simulator" 2>/dev/null || true; rm -rf "$folder"' EXIT

(cd "$windows" && rm -f ./*.zip && cpack -G ZIP >"$folder/log" 2>&1) || { cat "$folder/log" && exit 1; }
archive=$(echo "$windows"/*.zip)
users="$WINEPREFIX/drive_c/Program Files/Camera Link"
mkdir -p "$users"
(cd "$users" && cmake -E tar xf "$archive")
program=$(echo "$users"/*/bin/vanto-cl.exe)

for library in cli11 nlohmann_json gcc mingw-w64 $(find "$(windows_libraries)/lib" -maxdepth 1 -type f -name 'lib*.a' \
    ! -name 'libg[mt]*' -printf '%f '); do
    license=$(echo "$users"/*/share/doc/vanto/licenses/"$(basename "$library" .a).txt")
    [ -s "$license" ] || { echo "the archive lacks $license" && exit 1; }
done

mkdir "$folder/links"
"$native/marlow-sim" --links "$folder/links" --camera com35,model=H4096,serial=ZIP035 >"$folder/greeting" &
simulator=$!
until=$((SECONDS + 60))
until grep -q ready "$folder/greeting"; do
    [ $SECONDS -lt $until ] || exit 1
    sleep 0.05
done
ln -sfn "$(readlink -f "$folder/links/com35")" "$WINEPREFIX/dosdevices/com35"
wine reg add 'HKLM\HARDWARE\DEVICEMAP\SERIALCOMM' /v '\Device\COM35' /d COM35 /f >/dev/null 2>&1

mkdir -p "$WINEPREFIX/drive_c/archive"
echo '<CLBindings><Port><ID>COM_Port#COM35</ID><Enabled>yes</Enabled></Port></CLBindings>' \
    >"$WINEPREFIX/drive_c/archive/PortConfiguration_x64.xml"
# Nothing of the build tree may help.
listed=$(cd "$folder" && VANTO_CL_BINDINGS='C:\archive' timeout 300 "$wine_programs/wine64" "$program" list </dev/null 2>&1)
echo "$listed"
grep -q ZIP035 <<<"$listed"

# As others build, who may not optimize: then more of what is in headers is looked for in the libraries.
tree=$(echo "$users"/*)
static=(-DCMAKE_{EXE,SHARED,MODULE}_LINKER_FLAGS=-static)
{
    cmake -S "$tree/share/doc/vanto/examples" -B "$folder/examples" -DCMAKE_PREFIX_PATH="$tree" "${static[@]}" \
        -DCMAKE_SYSTEM_NAME=Windows -DCMAKE_CXX_COMPILER=x86_64-w64-mingw32-g++-posix \
        -DCMAKE_RC_COMPILER=x86_64-w64-mingw32-windres
    cmake --build "$folder/examples" -j "${JOBS:-2}"
} >"$folder/log" 2>&1 || { cat "$folder/log" && echo "the examples can't be built with the archive's CMake package" && exit 1; }
cp "$folder/examples/example-list.exe" "$tree/bin/list-of-the-users.exe"
listed=$(cd "$folder" && VANTO_CL_BINDINGS='C:\archive' timeout 300 "$wine_programs/wine64" "$tree/bin/list-of-the-users.exe" </dev/null 2>&1)
grep -q ZIP035 <<<"$listed" || { echo "an example that was built with the archive says: $listed" && exit 1; }
echo "$(basename "$archive"): $(stat -c %s "$archive") bytes"
