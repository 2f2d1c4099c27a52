#!/bin/bash
# SPDX-License-Identifier: Apache-2.0
# Every command in a terminal of 80 columns, as tmux shows it: no line is longer, and no name is cut.
# usage: tmux-test.sh FOLDER-OF-VANTO-CL [FOLDER-FOR-THE-SCREENS]
set -u
PATH="$1:$PATH"
folder=$(mktemp -d)
screens=${2:-$folder/screens}
mkdir -p "$screens"
export VANTO_CL_STATE="$folder/state" GENICAM_CACHE="$folder/cache" TMUX_TMPDIR="$folder" TERM=xterm-256color LC_ALL=C.UTF-8
unset TMUX NO_COLOR
cd "$folder" || exit 1
tmux=(tmux -f /dev/null -L screens)
trap '"${tmux[@]}" kill-server 2>/dev/null; rm -rf "$folder"' EXIT
failures=0

fail() { # fail TEXT
    echo "$1"
    failures=1
}

# Shows what a command leaves in the terminal, lines that went on in the next one as the one that they are.
screen() { # screen NAME SHELL-COMMAND
    local file="$screens/$1.txt"
    "${tmux[@]}" new-session -d -x 80 -y 50 \; set-option -g history-limit 20000 2>/dev/null
    "${tmux[@]}" new-window -n "$1" "stty -echo; $2; tmux -L screens wait-for -S finished; exec sleep 1000"
    "${tmux[@]}" wait-for finished
    "${tmux[@]}" capture-pane -p -J -S - -t "$1" | sed 's/[[:space:]]*$//' >"$file"
    "${tmux[@]}" kill-window -t "$1"
    # A word that no line has room for, as the path of a library, goes on in the next line and can be copied as a whole.
    if grep -nE '^.{81,}' "$file" | grep -vE '^[0-9]+:[[:space:]]*[^[:space:]]{70,}$'; then
        fail "$1: lines of more than 80 columns"
    fi
}

vanto-cl --simulate=1 xml 0 -o camera.xml >/dev/null || exit 1
vanto-cl --simulate=1 save 0 settings.txt >/dev/null || exit 1
vanto-cl --simulate=2 features 0 --json | grep -o '"Name": *"[^"]*"' | cut -d'"' -f4 | sort >names
one="vanto-cl --simulate=3"
screen list "$one list"
screen list-forget "$one list --forget"
screen ports "$one ports"
screen doctor "$one doctor"
screen xml "$one xml 0 -o other.xml"
screen features "$one features 0"
screen features-tree "$one features 0 --tree"
screen features-pattern "$one features 1 exposure"
screen info "$one info 0 ExposureTime TriggerSource Width DeviceID"
screen get "$one get 0 Width DeviceSerialNumber ClTapGeometry"
screen get-unknown "$one get 0 Wdith"
screen set "$one set 0 Width=1024 'ExposureTime=2 ms'"
screen set-refused "$one set 0 Width=1023 Gain=99"
screen exec "$one exec 0 TimestampLatch"
screen watch "timeout -s INT 2 $one watch 0 Width DeviceTemperature"
screen save "$one save 0 -"
screen load "$one load 0 settings.txt"
screen rate "$one rate 0"
screen read "$one read 0 0x1000 128"
screen write "$one write 0 0x10005C 00000001"
screen grab "$one grab 0 -n 3 -o images --stats"
screen grab-preview "$one grab 0 --preview --format none"
screen describe "vanto-cl describe camera.xml"
screen describe-check "vanto-cl describe camera.xml --check"
for command in path show check; do
    screen "config-$command" "$one config $command"
done
screen config-init "VANTO_CL_BINDINGS=$folder/new vanto-cl config init"
screen unknown-camera "$one get nobody Width"
screen completion "vanto-cl completion bash | head -3"
screen help "vanto-cl help"
for command in list ports doctor xml features info get set exec watch save load rate read write grab describe config \
    completion; do
    screen "help-$command" "vanto-cl help $command"
done
while IFS= read -r name; do
    grep -qE "(^|[[:space:]])$name([[:space:]]|\$)" "$screens/features-tree.txt" || fail "$name is not there in full"
done <names
for page in "$screens"/*.txt; do
    case ${page##*/} in
        set.txt | exec.txt) ;; # are silent when all is well
        *) grep -q '[^[:space:]]' "$page" || fail "$page is empty" ;;
    esac
done
[ "$(wc -l <names)" -gt 40 ] || fail "there are only $(wc -l <names) names"
exit $failures
