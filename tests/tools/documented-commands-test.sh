#!/bin/bash
# SPDX-License-Identifier: Apache-2.0
# The commands of vanto-cl in README.md and docs/ work as they stand there: each line that begins with one is run against
# simulated cameras, up to a pipe or redirection. What goes on without an end is interrupted. Where a page shows what a
# command prints, in the lines up to the next command, the end of the block or an empty line, it prints that, but for
# times, rates and what depends on them, and for what a line "..." leaves out.
# usage: documented-commands-test.sh ROOT-OF-THE-TREE FOLDER-OF-VANTO-CL
set -u
root=$1
PATH="$2:$PATH"
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
export VANTO_CL_STATE="$folder/state" GENICAM_CACHE="$folder/cache"
cd "$folder" || exit 1
vanto-cl --simulate=1 xml 0 -o camera.xml >/dev/null || exit 1
printf '%s\n' '<CLBindings>' '  <Port>' '    <ID>COM_Port#ttyUSB0</ID>' '    <Enabeld>true</Enabeld>' \
    '    <Manufacturer>Marlow</Manufacturer>' '  </Port>' '</CLBindings>' >PortConfiguration_x64.xml
failures=0
count=0
shown_count=0

# Times and rates, the one where a rate is left out because a time is too short.
without_volatile() {
    sed -E 's/[0-9.]+ (ms|s|min)\b/TIME/g; s/(, | )?[0-9.]+ (frames|MB)\/s//g; s/: *$//; s/[[:space:]]+$//'
}

# Whether a text is the shown one, where "..." stands for any lines and empty lines do not count.
is_excerpt() { # is_excerpt SHOWN FILE
    local before='' part='' line rest
    rest=$'\n'$(sed '/^$/d' "$2")$'\n'
    while IFS= read -r line; do
        if [ "$line" != ... ]; then
            part+=$'\n'$line
            continue
        fi
        # shellcheck disable=SC2053 # a pattern
        [[ $rest == $before"$part"$'\n'* ]] || return 1
        rest=$'\n'${rest#*"$part"$'\n'} part='' before='*'
    done <<<"$1"
    # shellcheck disable=SC2053 # a pattern
    [[ $rest == $before"$part"$'\n' ]]
}

run() { # run PAGE LINE SHOWN
    local words code
    eval "words=($2)" || return
    words=("${words[@]:1}")
    [[ ${words[0]} == --simulate* || ${words[*]} == *--file* ]] || words=(--simulate "${words[@]}")
    rm -rf frame_* images
    ((++count))
    # Ctrl-C after a while: 'watch' and endless grabs have no other end. What prints what is shown ends by itself.
    timeout -s INT -k 20 "$([ -n "$3" ] && echo 30 || echo 4)" vanto-cl "${words[@]}" >output 2>errors
    code=$?
    case "$code:${words[*]}" in
        0:* | 124:* | 130:*) ;;
        1:*"config init"*) ;; # the simulation has a configuration already
        1:*"config check --file"*) ;; # the file is faulty on purpose
        *)
            echo "$1: '$2' ends with $code: $(head -3 errors)"
            failures=1 ;;
    esac
    [ -n "$3" ] || return
    ((++shown_count))
    if [[ $'\n'$3$'\n' == *$'\n...\n'* ]]; then
        is_excerpt "$3" output && return
        echo "$1: '$2' prints no such lines as the page shows:" && cat output
        failures=1
        return
    fi
    diff <(without_volatile <<<"$3") <(without_volatile <output) >difference || {
        echo "$1: '$2' prints something else than the page shows:" && cat difference
        failures=1
    }
}

finish() { # runs the command that was found, with what the page shows of its output
    [ -z "$line" ] || run "$page" "$line" "$shown"
    line='' shown=''
}

for file in "$root/README.md" "$root"/docs/*.md; do
    page=${file#"$root"/} line='' shown=''
    while IFS= read -r text; do
        if [[ $text =~ ^(\$\ )?(sudo\ )?vanto-cl\  ]]; then
            finish
            line=${text#\$ } line=${line#sudo }
            line=$(sed -E 's/[[:space:]]+#.*$//; s/ (\||>|<\().*$//; s/\\$//' <<<"$line")
            # Only behind a prompt do commands and output stand in one block, and what goes elsewhere is not shown.
            [[ $text == '$ '* && ! $text =~ [\|\>\\] ]] && takes_output=1 || takes_output=0
        elif [[ $text == '```'* || -z $text || $text == '$ '* ]]; then
            finish
        elif [ -n "$line" ] && [ "$takes_output" = 1 ]; then
            shown+=${shown:+$'\n'}$text
        fi
    done <"$file"
    finish
done
[ "$count" -gt 40 ] || { echo "only $count commands were found" && failures=1; }
[ "$shown_count" -gt 8 ] || { echo "only $shown_count commands show what they print" && failures=1; }
exit $failures
