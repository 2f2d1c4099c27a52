#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Makes a release: checks that the version stands where it must, runs all suites, makes all packages, and puts them with
# their checksums into build/release-VERSION.
# usage: packaging/release.sh [--check] VERSION     --check only looks whether it could be made
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
check=
[ "${1:-}" = --check ] && check=yes && shift
version=${1:?usage: packaging/release.sh [--check] VERSION}
fail() { echo "release: $*" >&2 && exit 1; }

[[ $version =~ ^[0-9]+\.[0-9]+\.[0-9]+\.[0-9]+$ ]] || fail "'$version' is no version of four numbers"
[ -z "$(git status --porcelain)" ] || fail "there are changes that were not committed"
stands=$(sed -n 's/^project(.* VERSION \([0-9.]*\) .*/\1/p' CMakeLists.txt)
[ "$stands" = "$version" ] || fail "CMakeLists.txt says $stands"
heading="## $version, $(date +%Y-%m-%d)"
grep -qxF "$heading" CHANGELOG.md || fail "CHANGELOG.md has no line '$heading'"
# Below it stands what changed, up to the next heading.
[ "$(sed -n "/^## ${version//./\\.},/,/^## /p" CHANGELOG.md | grep -c '^- ')" -gt 0 ] || fail "CHANGELOG.md lists no changes"
if sed -n '/^## Unreleased/,/^## /p' CHANGELOG.md | grep -q '^- '; then
    fail "CHANGELOG.md has changes that belong to no version"
fi

[ -z "$check" ] || exit 0

./test.sh --full
./test-windows.sh

output=build/release-$version
rm -rf "$output"
mkdir -p "$output"
cp build/package/packages/*.deb "$output"
tree=$(mktemp -d)
cmake --install build/release --prefix "$tree" >/dev/null
packaging/make-wheel.py "$tree" "$output"
rm -rf "$tree"
packaging/windows/make-installer.sh build/windows "$output/vanto-clser-$version-win64.exe"
(cd build/windows && rm -f ./*.zip && cpack -G ZIP >/dev/null && cp ./*.zip "../../$output")
git archive --prefix="vanto-$version/" -o "$output/vanto-$version.tar.gz" HEAD
(cd "$output" && sha256sum ./* >SHA256SUMS && sha256sum --quiet -c SHA256SUMS)
echo "The release is in $output:"
cat "$output/SHA256SUMS"
