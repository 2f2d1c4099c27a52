#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Makes a release, or only its packages. See packaging/release.sh --help.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

usage() {
    cat <<END
usage: packaging/release.sh [--check | --packages] [--without-windows] VERSION

Makes a release: checks that the version stands where it must, runs all suites, makes all packages, and puts them with
their checksums into build/release-VERSION.
  --check            only looks whether the release could be made
  --packages         runs no suite: makes the packages of this commit, with the trees build/release and build/windows as they
                     are, which must have passed before; they go into build/packages-VERSION
  --without-windows  nothing for Windows; into build/packages-VERSION as well, as that is no whole release
END
}

fail() { echo "release: $*" >&2 && exit 1; }
step=all windows=yes version=
for argument in "$@"; do
    case $argument in
        -h | --help) usage && exit 0 ;;
        --check) step=check ;;
        --packages) step=packages ;;
        --without-windows) windows=no ;;
        -*) usage >&2 && exit 2 ;;
        *)
            [ -z "$version" ] || { usage >&2 && exit 2; }
            version=$argument
            ;;
    esac
done
[ -n "$version" ] || { usage >&2 && exit 2; }

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
[ "$step" != check ] || exit 0

# require_tree FOLDER: a tree that was built, of this version
require_tree() {
    [ -f "$1/CMakeCache.txt" ] || fail "$1 was not built"
    grep -qxF "CMAKE_PROJECT_VERSION:STATIC=$version" "$1/CMakeCache.txt" || fail "$1 is of another version"
}

output=build/release-$version
[ "$step$windows" = allyes ] || output=build/packages-$version
if [ "$step" = all ]; then
    ./test.sh --full
    [ "$windows" = no ] || ./test-windows.sh
else
    require_tree build/release
    [ "$windows" = no ] || require_tree build/windows
    packaging/make-packages.sh
fi

rm -rf "$output"
mkdir -p "$output"
cp build/package/packages/*.deb "$output"
tree=$(mktemp -d)
trap 'rm -rf "$tree"' EXIT
cmake --install build/release --prefix "$tree" >/dev/null
packaging/make-wheel.py "$tree" "$output"
wanted=(libvanto_ libvanto-dev_ vanto-cl_ vanto-doc_ python3-vanto_ "vanto-$version-" "vanto-$version.tar.gz")
if [ "$windows" = yes ]; then
    packaging/windows/make-installer.sh build/windows "$output/vanto-clser-$version-win64.exe"
    (cd build/windows && rm -f ./*.zip && cpack -G ZIP >/dev/null)
    cp build/windows/*.zip "$output"
    wanted+=("vanto-clser-$version-win64.exe" '*.zip')
fi
git archive --prefix="vanto-$version/" -o "$output/vanto-$version.tar.gz" HEAD
for one in "${wanted[@]}"; do
    compgen -G "$output/$one*" >/dev/null || fail "$one was not made"
done
(cd "$output" && sha256sum ./* >SHA256SUMS && sha256sum --quiet -c SHA256SUMS)
echo
if [ "$output" = "build/release-$version" ]; then
    echo "The release is in $output:"
else
    echo "The packages are in $output. THIS IS NO RELEASE:"
    [ "$step" = all ] || echo "- no suite was run"
    [ "$windows" = yes ] || echo "- nothing for Windows was made"
fi
cat "$output/SHA256SUMS"
