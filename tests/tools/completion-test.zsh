#!/bin/zsh -f
# SPDX-License-Identifier: Apache-2.0
# What the zsh completion offers: completion-test.zsh FOLDER-OF-VANTO-CL
#
# Outside of the line editor its builtins can't be called: these do as they do, for what the completion asks of them.
path=($1 $path)
completion=$(mktemp)
trap "rm -f $completion" EXIT
vanto-cl completion zsh >$completion
typeset -a offered words
typeset PREFIX
typeset -i CURRENT failures=0

compadd() {
    [[ $1 == -S ]] && shift 2
    local word
    for word in ${(P)2}; do
        [[ $word == ${(b)PREFIX}* ]] && offered+=($word)
    done
}
_files() { offered+=(files) }

expect() {
    words=(${(s: :)1})
    [[ $1 == *" " ]] && words+=("")
    CURRENT=$#words PREFIX=$words[-1] offered=()
    source $completion
    if [[ "$offered" != "$2" ]]; then
        print -r -- "'$1' offers '$offered', not '$2'"
        (( ++failures ))
    fi
}

expect "vanto-cl se" "set"
expect "vanto-cl manual" ""
expect "vanto-cl --v" "--version"
expect "vanto-cl config " "path show check init"
expect "vanto-cl get --j" "--json"
expect "vanto-cl --simulate get " "SIM00001 COM_Port#cam0 SIM00002 COM_Port#cam1"
expect "vanto-cl --simulate get SIM00001 Width ExposureT" "ExposureTime"
expect "vanto-cl --simulate set 0 ExposureT" "ExposureTime="
expect "vanto-cl --simulate set 0 Width=8 PixelFormat=Mono1" "PixelFormat=Mono10 PixelFormat=Mono12 PixelFormat=Mono16"
expect "vanto-cl --simulate set 0 ReverseX=o" "ReverseX=on ReverseX=off"
expect "vanto-cl --simulate exec 0 UserSetL" "UserSetLoad"
expect "vanto-cl get nobody Wid" ""
expect "vanto-cl --simulate grab S" "SIM00001 SIM00002"
expect "vanto-cl grab 0 --format p" "png pnm pgm"
expect "vanto-cl --simulate grab -n 5 S" "SIM00001 SIM00002"
expect "vanto-cl --simulate grab 0 -n 5 --set ExposureT" "ExposureTime="
expect "vanto-cl --simulate grab 0 --set Width=8 --set PixelFormat=Mono1" "PixelFormat=Mono10 PixelFormat=Mono12 PixelFormat=Mono16"
expect "vanto-cl grab 0 -o " "files"
expect "vanto-cl grab 0 -n " ""
expect "vanto-cl features 0 --visibility e" "expert"
expect "vanto-cl load 0 " "files"
exit $(( failures > 0 ))
