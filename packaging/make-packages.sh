#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Makes the Debian packages, into build/package/packages, and has lintian look through them.
# usage: packaging/make-packages.sh
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
. packaging/steps.sh
install_missing_packages build test python docs packages
log=$(mktemp)
trap 'rm -f "$log"' EXIT
quietly() { "$@" >"$log" 2>&1 || { tail -n 200 "$log" >&2 && exit 1; }; }
quietly cmake --preset package
quietly cmake --build --preset package -j "${JOBS:-$(nproc)}"
quietly cmake --build --preset package --target reference
rm -rf build/package/packages
(cd build/package && quietly cpack -G DEB -B packages)
rm -rf build/package/packages/_CPack_Packages
cd build/package/packages
ls -l ./*.deb
# Each tag that is overridden has its reason in packaging/debian/*.lintian-overrides.
lintian --fail-on error,warning --profile debian --tag-display-limit 0 ./*.deb
