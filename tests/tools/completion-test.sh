#!/bin/bash
# SPDX-License-Identifier: Apache-2.0
# What the bash completion offers, asked as bash asks it: completion-test.sh FOLDER-OF-VANTO-CL
set -u
PATH="$1:$PATH"
here="${BASH_SOURCE[0]}"
# shellcheck disable=SC1090 # the program makes it
source <(vanto-cl completion bash) || exit 1
failures=0

expect() {
    local line="$1" wanted="$2"
    COMP_LINE="$line" COMP_POINT=${#line} COMP_WORDS=(vanto-cl) COMPREPLY=()
    _vanto_cl
    if [[ "${COMPREPLY[*]}" != "$wanted" ]]; then
        echo "'$line' offers '${COMPREPLY[*]}', not '$wanted'"
        ((++failures))
    fi
}

expect "vanto-cl se" "set"
expect "vanto-cl manual" ""
expect "vanto-cl --v" "--version"
expect "vanto-cl completion " "bash zsh fish"
expect "vanto-cl help con" "config"
expect "vanto-cl config " "path show check init"
expect "vanto-cl config check --f" "--file"
expect "vanto-cl config check --file $here" "$here"
expect "vanto-cl get --j" "--json"
expect "vanto-cl --simulate get " "SIM00001 COM_Port#cam0 SIM00002 COM_Port#cam1"
expect "vanto-cl --simulate=1 get " "SIM00001 COM_Port#cam0"
expect "vanto-cl --simulate get SIM00001 Width ExposureT" "ExposureTime"
expect "vanto-cl --simulate info 0 ExposureT" "ExposureTime"
expect "vanto-cl --simulate set 0 ExposureT" "ExposureTime="
expect "vanto-cl --simulate set 0 Width=8 PixelFormat=Mono1" "Mono10 Mono12 Mono16"
expect "vanto-cl --simulate set 0 ReverseX=o" "on off"
expect "vanto-cl --simulate exec 0 UserSetL" "UserSetLoad"
expect "vanto-cl --simulate grab S" "SIM00001 SIM00002"
expect "vanto-cl grab 0 --fo" "--format"
expect "vanto-cl grab 0 --format p" "png pnm pgm"
expect "vanto-cl --simulate grab -n 5 S" "SIM00001 SIM00002"
expect "vanto-cl --simulate grab 0 -n 5 --set ExposureT" "ExposureTime="
expect "vanto-cl --simulate grab 0 --set Width=8 --set PixelFormat=Mono1" "Mono10 Mono12 Mono16"
expect "vanto-cl grab 0 -n " ""
expect "vanto-cl features 0 --visibility e" "expert"
expect "vanto-cl --simulate get nobody Wid" ""
expect "vanto-cl load 0 $here" "$here"
expect "vanto-cl grab 0 -o $(dirname "$here")/cl" "$(dirname "$here")/cli"
exit $((failures > 0))
