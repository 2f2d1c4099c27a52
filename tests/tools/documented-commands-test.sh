#!/bin/bash
# SPDX-License-Identifier: Apache-2.0
# The commands of vanto-cl in README.md and docs/ work as they stand there: each line that begins with one is run against
# simulated cameras, up to a pipe or redirection. What goes on without an end is interrupted.
# usage: documented-commands-test.sh ROOT-OF-THE-TREE FOLDER-OF-VANTO-CL
set -u
root=$1
PATH="$2:$PATH"
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
export VANTO_CL_STATE="$folder/state" GENICAM_CACHE="$folder/cache"
cd "$folder" || exit 1
vanto-cl --simulate=1 xml 0 -o camera.xml >/dev/null || exit 1
failures=0
count=0

run() { # run PAGE LINE
    local words code
    eval "words=($2)" || return
    words=("${words[@]:1}")
    [[ ${words[0]} == --simulate* ]] || words=(--simulate "${words[@]}")
    rm -rf frame_* images
    ((++count))
    # Ctrl-C after a while: 'watch' and endless grabs have no other end.
    timeout -s INT -k 20 4 vanto-cl "${words[@]}" >output 2>errors
    code=$?
    case "$code:${words[*]}" in
        0:* | 124:* | 130:*) ;;
        1:*"config init"*) ;; # the simulation has a configuration already
        *)
            echo "$1: '$2' ends with $code: $(head -3 errors)"
            failures=1 ;;
    esac
}

while IFS= read -r found; do
    page=${found%%:*}
    line=${found#*:}
    line=${line#\$ }
    line=${line#sudo }
    line=$(sed -E 's/[[:space:]]+#.*$//; s/ (\||>|<\().*$//; s/\\$//' <<<"$line")
    run "${page#"$root"/}" "$line"
done < <(grep -E '^(\$ )?(sudo )?vanto-cl ' "$root/README.md" "$root"/docs/*.md)
[ "$count" -gt 40 ] || { echo "only $count commands were found" && failures=1; }
exit $failures
