#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Installs a build tree into a folder, moves that folder, and uses it as others do: lists simulated cameras with a bare
# environment, includes each header, builds the installed examples with CMake and with pkg-config and runs them, removes
# everything. What is installed must know nothing of the build tree.
# usage: packaging/check-install.sh BUILD_FOLDER
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
. packaging/simulated-cameras.sh
build=$(cd "$1" && pwd)
folder=$(mktemp -d)
trap 'end_cameras; rm -rf "$folder"' EXIT
fail() { echo "check-install: $*" >&2 && exit 1; }
quietly() { # quietly COMMAND...: shows what it printed when it fails
    "$@" >"$folder/log" 2>&1 || { cat "$folder/log" >&2 && fail "$*"; }
}

quietly cmake --install "$build" --prefix "$folder/first"
mv "$folder/first" "$folder/moved"
tree=$folder/moved
run() { env -i PATH=/usr/bin:/bin HOME="$folder" TERM=dumb "$@"; }

echo "-- the programs"
run "$tree/bin/vanto-cl" --version
listed=$(run "$tree/bin/vanto-cl" --simulate list)
echo "$listed"
grep -q '^2 cameras found' <<<"$listed"
run "$tree/bin/vanto-cl" --simulate xml 0 -o "$folder/camera.xml"
test -s "$folder/camera.xml"
# A library that still knows the build tree would hide that the installed one can't be found.
if find "$tree" -type f -name '*.so*' -o -type f -path '*/bin/*' | xargs -r readelf -d 2>/dev/null |
    grep -E 'R(UN)?PATH' | grep -vE '\[\$ORIGIN[^]:]*(:\$ORIGIN[^]:]*)*\]'; then
    fail "an installed file has a run path that is not relative to itself"
fi
if grep -rlIF -e "$PWD" -e "$build" "$tree"; then
    fail "an installed file names the build tree"
fi

if grep -q '^VANTO_BUILD_PYTHON:BOOL=ON' "$build/CMakeCache.txt"; then
    echo "-- the Python module"
    run env PYTHONPATH="$tree/lib/python3/dist-packages" PYTHONDONTWRITEBYTECODE=1 /usr/bin/python3 \
        "$tree/share/doc/vanto/examples/python/exposure_sweep.py" --help | grep -q -- --simulate || fail "an example in Python"
    (cd "$folder" && run env PYTHONPATH="$tree/lib/python3/dist-packages" PYTHONDONTWRITEBYTECODE=1 /usr/bin/python3 \
        "$tree/share/doc/vanto/examples/python/burst_to_tiff.py" --simulate --count 3) | grep '^3 images' || fail "frames in Python"
fi

echo "-- each header alone, as C++17"
headers=$(cd "$tree"/include/vanto-* && pwd)
(cd "$headers" && find . -name '*.h' -printf '%P\n') >"$folder/headers"
[ -s "$folder/headers" ]
check_header() {
    printf '#include "%s"\n' "$1" | "$2" -std=c++17 -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror -I"$headers" \
        -fsyntax-only -x c++ - || { echo "$1 does not compile alone with $2" && return 255; }
}
export -f check_header
export headers
for compiler in g++ clang++ clang++-16; do
    command -v $compiler >/dev/null || continue
    xargs -P "${JOBS:-2}" -I{} bash -c "check_header {} $compiler" <"$folder/headers"
done
printf '#include "clser/ClSerial.h"\n#include "gentl/GenTL.h"\n#include "CLProtocol/CLProtocolC.h"\n' | gcc -std=c99 -Wall -Wpedantic -Werror -I"$headers" -fsyntax-only -x c -
echo "$(wc -l <"$folder/headers") headers"
[ "$(find "$tree/include" -mindepth 1 -maxdepth 1 | wc -l)" -eq 1 ] || fail "headers lie beside the folder of ours"

echo "-- the examples as a CMake project"
cp -r "$tree/share/doc/vanto/examples" "$folder/examples"
quietly run cmake -S "$folder/examples" -B "$folder/built" -DCMAKE_PREFIX_PATH="$tree" -DCMAKE_CXX_FLAGS="-Wall -Wextra"
quietly run cmake --build "$folder/built" -j "${JOBS:-2}"
mkdir "$folder/refused"
for wanted in "4" "3.2 COMPONENTS Nothing"; do
    printf 'cmake_minimum_required(VERSION 3.16)\nproject(refused CXX)\nfind_package(Vanto %s REQUIRED)\n' "$wanted" \
        >"$folder/refused/CMakeLists.txt"
    if cmake -S "$folder/refused" -B "$folder/refused/built" -DCMAKE_PREFIX_PATH="$tree" >"$folder/log" 2>&1; then
        fail "find_package(Vanto $wanted) is content"
    fi
done

echo "-- the examples with pkg-config"
PKG_CONFIG_LIBDIR=$(dirname "$(find "$tree" -name vanto-base.pc)")
export PKG_CONFIG_LIBDIR
for module in "$PKG_CONFIG_LIBDIR"/*.pc; do
    module=$(basename "$module" .pc)
    pkg-config --validate "$module" && pkg-config --cflags --libs "$module" >/dev/null
done
mkdir "$folder/flags"
compile() { # compile NAME MODULE [MORE...]
    local flags
    read -ra flags <<<"$(pkg-config --cflags --libs "$2")"
    quietly g++ -I"$folder/examples" "$folder/examples/$1.cpp" "${@:3}" -o "$folder/flags/example-$1" "${flags[@]}"
}
for example in "$folder"/examples/*.cpp; do
    example=$(basename "$example" .cpp)
    [ "$example" != clprotocol_driver ] || continue
    case $(cat "$folder/examples/$example.cpp") in
        *vanto/Camera.h*) compile "$example" vanto-application ;;
        *GenTLProducer.h*) compile "$example" vanto-gentl-interface "$folder/examples/posix/GenTLProducer.cpp" -ldl ;;
        *) compile "$example" vanto-base ;;
    esac
done

echo "-- the examples, with a simulated camera"
use_examples() { # use_examples FOLDER: runs all examples that were built there
    local bin=$1
    (cd "$folder" && rm -f image*.png && camera_run "$bin/example-five_images" &&
        [ "$(find . -maxdepth 1 -name 'image*.png' | wc -l)" -eq 5 ]) || fail "five_images"
    camera_run "$bin/example-list" | grep -q '^1 cameras' || fail "list"
    camera_run "$bin/example-set_exposure" 2500 | grep -q '^to   2500 us' || fail "set_exposure"
    camera_run "$bin/example-auto_close" | grep -q 'after the port was opened again' || fail "auto_close"
    camera_run "$bin/example-gentl_grab" "$producer" 3 | grep -q . || fail "gentl_grab"
    [ "$(camera_run "$bin/example-grab" 3 | grep -c '^image [0-9]*: ')" -eq 3 ] || fail "grab"
}
producer=$(find "$tree" -name 'vanto-cl.cti')
begin_cameras "$tree/bin/marlow-sim" "$folder/cameras"
LD_LIBRARY_PATH=$(dirname "$(find "$tree" -name 'libVantoBase.so')")
export LD_LIBRARY_PATH
use_examples "$folder/built"
use_examples "$folder/flags"
camera_run "$folder/built/example-removal_callback" >"$folder/removal" &
until grep -q ' C$' "$folder/removal" 2>/dev/null; do
    kill -0 $! 2>/dev/null || fail "removal_callback ended"
    sleep 0.05
done
end_cameras
wait $! || fail "removal_callback"
grep -q 'is gone$' "$folder/removal"
unset LD_LIBRARY_PATH

echo "-- the frame-grabber plug-in of the examples"
plugins=$(dirname "$(find "$tree" -name 'SaperaFgPlugin_MD_VC100.dll')")
use_plugin() { # use_plugin FILE: takes images with it in place of the simulated frame grabber
    cp "$1" "$plugins/SaperaFgPlugin_MD_VC100.dll"
    run "$tree/bin/vanto-cl" --simulate grab 0 -n 3 --format pgm -o "$folder/gradient" >/dev/null
    [ "$(find "$folder/gradient" -name '*.pgm' | wc -l)" -eq 3 ] || fail "the plug-in delivers no images"
    # Each pixel is one step lighter than the one before it.
    tail -c 2048 "$folder/gradient/frame_000001.pgm" | od -An -v -tu1 -w1 |
        awk 'NR > 1 && ($1 - before + 256) % 256 != 1 { bad = 1 } { before = $1 } END { exit bad }' ||
        fail "the images are not those of the plug-in"
    rm -r "$folder/gradient"
}
cp "$plugins/SaperaFgPlugin_MD_VC100.dll" "$folder/simulated"
use_plugin "$folder/built/frame_grabber_plugin/SaperaFgPlugin_MD_VC100.dll"
source=$folder/examples/frame_grabber_plugin
quietly run cmake -S "$source" -B "$folder/plugin" -DCMAKE_PREFIX_PATH="$tree"
quietly run cmake --build "$folder/plugin"
# shellcheck disable=SC2046 # several flags
quietly g++ $(pkg-config --cflags vanto-fgplugin) -fPIC -shared -pthread "-Wl,--version-script=$source/exports.map" \
    "$source/GradientGrabber.cpp" -o "$folder/SaperaFgPlugin_MD_VC100.dll"
use_plugin "$folder/SaperaFgPlugin_MD_VC100.dll"
cp "$folder/simulated" "$plugins/SaperaFgPlugin_MD_VC100.dll"

echo "-- the CLProtocol driver of the examples"
use_driver() { # use_driver FOLDER: reads a feature with the only driver that lies there
    [ "$(run env GENICAM_CLPROTOCOL="$1" "$tree/bin/vanto-cl" --simulate get 0 Width)" = 2048 ] || fail "the driver in $1"
    run env GENICAM_CLPROTOCOL="$1" "$tree/bin/vanto-cl" --simulate doctor | grep -q ExampleCLProtocol || fail "doctor"
}
use_driver "$folder/built/examples/clprotocol"
mkdir -p "$folder/drivers/Linux64_x64"
# shellcheck disable=SC2046 # several flags
quietly g++ -std=c++11 -fPIC -shared -fvisibility=hidden $(pkg-config --cflags vanto-clprotocol-interface) \
    "$folder/examples/clprotocol_driver.cpp" -o "$folder/drivers/Linux64_x64/libExampleCLProtocol.so"
use_driver "$folder/drivers"

echo "-- removed again"
quietly cmake --install "$build" --prefix "$folder/third"
touch "$folder/third/lib/somebody's"
quietly cmake -P "$build/uninstall.cmake"
[ "$(find "$folder/third" ! -type d)" = "$folder/third/lib/somebody's" ] || fail "files are left"
if find "$folder/third" -iname '*vanto*' | grep .; then
    fail "folders are left"
fi
echo "the installed tree can be used"
