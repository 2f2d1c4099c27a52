#!/bin/zsh -f
# SPDX-License-Identifier: Apache-2.0
# What the zsh completion offers: completion-test.zsh COMPLETION FOLDER-OF-VANTO-CL
#
# Outside of the line editor its builtins can't be called: these do as they do, for what the completion asks of them.
path=($2 $path)
completion=$1
typeset -a offered words
typeset PREFIX IPREFIX
typeset -i CURRENT failures=0

compadd() {
    local suffix=""
    [[ $1 == -S ]] && { suffix=$2; shift 2 }
    local word
    for word in ${(P)2}; do
        [[ $word == ${(b)PREFIX}* ]] && offered+=($word$suffix)
    done
}
compset() {
    [[ "$*" == "-P 1 *=" && $PREFIX == *=* ]] || return 1
    IPREFIX=${PREFIX%%=*}=
    PREFIX=${PREFIX#*=}
}
_files() { offered+=(files) }

expect() {
    words=(${(s: :)1})
    [[ $1 == *" " ]] && words+=("")
    CURRENT=$#words PREFIX=$words[-1] IPREFIX="" offered=()
    source $completion
    if [[ "$offered" != "$2" ]]; then
        print -r -- "'$1' offers '$offered', not '$2'"
        (( ++failures ))
    fi
}

expect "vanto-cl se" "set"
expect "vanto-cl comp" ""
expect "vanto-cl --v" "--version"
expect "vanto-cl config " "path show check init"
expect "vanto-cl get --j" "--json"
expect "vanto-cl --simulate get " "SIM00001 COM_Port#cam0 SIM00002 COM_Port#cam1"
expect "vanto-cl --simulate get SIM00001 Width ExposureT" "ExposureTime"
expect "vanto-cl --simulate set 0 ExposureT" "ExposureTime="
expect "vanto-cl --simulate set 0 Width=8 PixelFormat=Mono1" "Mono10 Mono12 Mono16"
expect "vanto-cl --simulate set 0 ReverseX=o" "on off"
expect "vanto-cl --simulate exec 0 UserSetL" "UserSetLoad"
expect "vanto-cl get nobody Wid" ""
expect "vanto-cl --simulate grab S" "SIM00001 SIM00002"
expect "vanto-cl grab 0 --format p" "png pgm"
expect "vanto-cl --simulate grab -n 5 S" "SIM00001 SIM00002"
expect "vanto-cl --simulate grab 0 -n 5 --set ExposureT" "ExposureTime="
expect "vanto-cl --simulate grab 0 --set Width=8 --set PixelFormat=Mono1" "Mono10 Mono12 Mono16"
expect "vanto-cl grab 0 -o " "files"
expect "vanto-cl grab 0 -n " ""
expect "vanto-cl features 0 --visibility e" "expert"
expect "vanto-cl load 0 " "files"
exit $(( failures > 0 ))
