#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# From a bare Debian 12 machine to a list of (simulated) Camera Link cameras and an image of one of them: installs what
# is missing, builds, shows.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"
. packaging/steps.sh

install_missing_packages build
mkdir -p build
targets=(vanto-cl marlow-sim VantoCLSer clsertty MarlowCLProtocol SaperaFgPlugin)
if ! { cmake --preset release -DVANTO_BUILD_TESTS=OFF && cmake --build --preset release --target "${targets[@]}"; } >build/demo.log 2>&1; then
    cat build/demo.log >&2
    exit 1
fi
rm -f build/demo.log

bin=$PWD/build/release/bin
result=build/release/demo
mkdir -p "$result"

echo "\$ vanto-cl --simulate list"
"$bin/vanto-cl" --simulate list
echo
echo "\$ vanto-cl --simulate xml 0 -o camera.xml"
(cd "$result" && "$bin/vanto-cl" --simulate xml 0 -o camera.xml)

# The simulator says which description it holds; what came over the serial line must be that, byte by byte.
expected=$("$bin/marlow-sim" --print-sha1 --camera "cam0,model=H2048,serial=SIM00001" | cut -d" " -f1)
fetched=$(sha1sum <"$result/camera.xml" | cut -d' ' -f1)
if [ "$expected" != "$fetched" ]; then
    echo "The camera holds a description with SHA-1 $expected, but $fetched was fetched." >&2
    exit 1
fi
echo "The camera's description is in $result/camera.xml; its SHA-1 $fetched is the camera's own."
echo
echo "\$ vanto-cl --simulate grab 1 --set PixelFormat=RGB8 --overwrite"
(cd "$result" && "$bin/vanto-cl" --simulate grab 1 --set PixelFormat=RGB8 --overwrite)
echo "The image is in $result/frame_000001.png."
