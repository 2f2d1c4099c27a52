#!/usr/bin/env fish
# SPDX-License-Identifier: Apache-2.0
# What the fish completion offers, asked of fish itself: completion-test.fish FOLDER-OF-VANTO-CL
set -gx PATH $argv[1] $PATH
set -g failures 0
vanto-cl completion fish | source

function expect
    set -l offered (complete -C "$argv[1]" | string replace -r '\t.*' '')
    if test "$offered" != "$argv[2]"
        echo "'$argv[1]' offers '$offered', not '$argv[2]'"
        set -g failures (math $failures + 1)
    end
end

expect "vanto-cl sa" save
expect "vanto-cl config " "check init path show"
expect "vanto-cl get --j" --json
expect "vanto-cl --simulate get SIM" "SIM00001 SIM00002"
expect "vanto-cl --simulate get SIM00001 Width ExposureT" ExposureTime
expect "vanto-cl --simulate set 0 ExposureT" "ExposureTime="
expect "vanto-cl --simulate set 0 ReverseX=o" "ReverseX=off ReverseX=on"
expect "vanto-cl grab 0 --format p" "pgm png pnm"
expect "vanto-cl grab 0 -n " ""
expect "vanto-cl load 0 "(status dirname)"/completion-test.f" (status dirname)/completion-test.fish
test $failures -eq 0
