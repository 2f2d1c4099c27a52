#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Installs a build tree into a folder, moves that folder, and lists simulated cameras from there with a bare environment.
# usage: packaging/check-install.sh BUILD_FOLDER
set -euo pipefail
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cmake --install "$1" --prefix "$folder/first" >/dev/null
mv "$folder/first" "$folder/moved"
run() { env -i PATH=/usr/bin:/bin HOME="$folder" TERM=dumb "$folder/moved/bin/vanto-cl" "$@"; }
run --version
listed=$(run --simulate list)
echo "$listed"
grep -q '^2 cameras found' <<<"$listed"
run --simulate xml 0 -o "$folder/camera.xml"
test -s "$folder/camera.xml"
# A library that still knows the build tree would hide that the installed one can't be found.
if find "$folder/moved" -type f -name '*.so*' -o -type f -path '*/bin/*' | xargs -r readelf -d 2>/dev/null |
    grep -E 'R(UN)?PATH' | grep -vE '\[\$ORIGIN[^]:]*(:\$ORIGIN[^]:]*)*\]'; then
    echo "an installed file has a run path that is not relative to itself" >&2
    exit 1
fi
