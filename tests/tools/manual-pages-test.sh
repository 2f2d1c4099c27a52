#!/bin/bash
# SPDX-License-Identifier: Apache-2.0
# The manual pages: each command has one, with an example, and groff finds no fault in any. The simulator tells its version.
# usage: manual-pages-test.sh VANTO-CL MARLOW-SIM
set -eu
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
"$1" manual-pages "$folder"
"$2" --manual-page >"$folder/marlow-sim.1"
failures=0
fail() {
    echo "$*"
    failures=1
}
for command in list ports xml features info get set exec grab watch save load rate read write config-path config-show \
    config-check config-init describe doctor completion help; do
    page="$folder/vanto-cl-$command.1"
    [ -s "$page" ] || fail "there is no page of $command"
    grep -q '^.SH EXAMPLES' "$page" || fail "the page of $command has no example"
    tr -d '\\' <"$folder/vanto-cl.1" | grep -q "^.BR vanto-cl-$command (1)" || fail "the main page does not name $command"
done
for page in "$folder"/*.1; do
    complaints=$(groff -man -Tutf8 -ww -z "$page" 2>&1)
    [ -z "$complaints" ] || fail "$page: $complaints"
done
text=$(MANWIDTH=80 groff -man -Tascii -P-cbou "$folder/vanto-cl-get.1")
grep -q 'vanto-cl get \[OPTIONS\] DEVICE NAME\.\.\.' <<<"$text" || fail "the usage is not as it must be typed"
[[ $("$2" --version) =~ ^marlow-sim\ [0-9.]+$ ]] || fail "marlow-sim does not tell its version"
exit $failures
