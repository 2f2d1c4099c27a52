#!/bin/bash
# SPDX-License-Identifier: Apache-2.0
# A release is refused with the reason until all is ready for it, before anything is built. In a clone.
# usage: release-test.sh ROOT-OF-THE-TREE
set -u
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cd "$folder" || exit 1
unset GIT_DIR GIT_WORK_TREE GIT_INDEX_FILE
git clone -q --no-checkout "$1" clone && cd clone || exit 1
git config user.name nobody && git config user.email nobody@vanto.example.org
# The tree as it is, not as it was committed last.
cp -r "$1/packaging" "$1/CMakeLists.txt" "$1/CHANGELOG.md" . && printf 'build/\n' >.gitignore
commit() { git add -A && git commit -qm change; }
commit
failures=0
version=$(sed -n 's/^project(.* VERSION \([0-9.]*\) .*/\1/p' CMakeLists.txt)
today=$(date +%Y-%m-%d)

expect() { # expect CODE TEXT ARGUMENT...
    local code=$1 text=$2 said
    shift 2
    said=$(packaging/release.sh "$@" 2>&1)
    [ $? -eq "$code" ] && [[ $said == *"$text"* ]] && return
    echo "release.sh $*: expected $code and '$text', it said: $said"
    failures=1
}

changelog() { # changelog LINE...: the whole file
    printf '%s\n' '# Changes' "$@" >CHANGELOG.md
    commit
}

expect 2 "usage:"
expect 2 "usage:" --fast "$version"
expect 2 "usage:" "$version" "$version"
expect 0 "--packages" --help
expect 1 "is no version of four numbers" 3.2
expect 1 "CMakeLists.txt says $version" 999.0.0.1
changelog '## Unreleased' '- New'
expect 1 "CHANGELOG.md has no line '## $version, $today'" "$version"
changelog "## $version, $today" '' '## 0.0.0.1, 2000-01-01' '- Old'
expect 1 "lists no changes" "$version"
changelog '## Unreleased' '- New' "## $version, $today" '- Done'
expect 1 "belong to no version" "$version"
changelog '## Unreleased' "## $version, $today" '- Done'
expect 0 "" --check "$version"
touch forgotten
expect 1 "were not committed" --check "$version"
rm forgotten
expect 1 "build/release was not built" --packages "$version"
mkdir -p build/release
echo CMAKE_PROJECT_VERSION:STATIC=1.0.0.0 >build/release/CMakeCache.txt
expect 1 "build/release is of another version" --packages "$version"
echo "CMAKE_PROJECT_VERSION:STATIC=$version" >build/release/CMakeCache.txt
expect 1 "build/windows was not built" --packages "$version"
exit $failures
