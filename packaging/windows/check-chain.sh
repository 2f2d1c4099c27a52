#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Uses simulated cameras of this machine over COM ports of Wine, in the prefix that WINEPREFIX names: each step from the
# program down to the system's serial port is the one that Windows users have.
# usage: packaging/windows/check-chain.sh WINDOWS_BUILD NATIVE_BUILD
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
. packaging/windows/wine.sh
bin=$(cd "$1/bin" && pwd)
native=$(cd "$2/bin" && pwd)
folder=$(mktemp -d)
simulator=
trap 'stop_simulator; rm -rf "$folder"' EXIT

fail() { echo "FAILED: $*" >&2 && exit 1; }
stop_simulator() { [ -z "$simulator" ] || { kill "$simulator" && wait "$simulator"; } 2>/dev/null || true; }

control() { # control COMMAND...: the simulator's answer
    perl -MIO::Socket::UNIX -e 'my $socket = IO::Socket::UNIX->new(Peer => $ARGV[0]) or die "no simulator: $!";
        print $socket "$ARGV[1]\n"; my $line = <$socket>; print $line; exit($line =~ /^ok/ ? 0 : 1)' \
        "$folder/control" "$*"
}

until_is() { # until_is VALUE COMMAND...: waits until a command prints a text
    local wanted=$1 until=$((SECONDS + 60))
    shift
    until [ "$("$@" 2>&1)" = "$wanted" ]; do
        [ $SECONDS -lt $until ] || fail "'$*' does not become '$wanted' but '$("$@" 2>&1)'"
        sleep 0.05
    done
}

windows() { # windows PROGRAM ARGUMENTS...
    local program=$1
    shift
    timeout 300 "$wine_programs/wine64" "$bin/$program.exe" "$@" </dev/null | tr -d '\r'
}

expect() { # expect TEXT COMMAND...: the command succeeds and prints the text
    local wanted=$1 printed
    shift
    printed=$("$@" 2>&1) || fail "'$*': $printed"
    grep -qF -- "$wanted" <<<"$printed" || fail "'$*' does not print '$wanted' but: $printed"
}

# Puts the camera NAME at the end of a port, as a driver does that enters its port in the registry.
add_port() { # add_port NAME
    ln -sfn "$(readlink -f "$folder/links/$1")" "$WINEPREFIX/dosdevices/${1,,}"
    wine reg add 'HKLM\HARDWARE\DEVICEMAP\SERIALCOMM' /v "\\Device\\${1^^}" /d "${1^^}" /f >/dev/null 2>&1
}

mkdir "$folder/links"
"$native/marlow-sim" --links "$folder/links" --control "$folder/control" --camera com33,model=H2048,serial=WIN033 \
    --camera com34,model=H4096,serial=WIN034 >"$folder/greeting" &
simulator=$!
until_is ready cat "$folder/greeting"
add_port com33
add_port com34

echo "  ports and configuration in the common application data folder"
expect 'C:\ProgramData\Marlow\CLBindings\PortConfiguration_x64.xml' windows vanto-cl config path
expect COM_Port#COM33 windows vanto-cl ports
windows vanto-cl config init >/dev/null || fail "config init"
[ -f "$WINEPREFIX/drive_c/ProgramData/Marlow/CLBindings/PortConfiguration_x64.xml" ] || fail "no configuration was written"

echo "  list"
expect "2 cameras found" windows vanto-cl list
expect WIN034 windows vanto-cl list
expect "2 cameras" windows example-list
rm -r "$WINEPREFIX/drive_c/ProgramData/Marlow"

echo "  a folder with a backslash at its end"
mkdir -p "$WINEPREFIX/drive_c/bindings"
echo '<CLBindings><Port><ID>COM_Port#COM33</ID><Enabled>yes</Enabled></Port></CLBindings>' \
    >"$WINEPREFIX/drive_c/bindings/PortConfiguration_x64.xml"
export VANTO_CL_BINDINGS='C:\bindings\'
expect "1 camera found" windows vanto-cl list
expect 'C:\bindings\PortConfiguration_x64.xml' windows vanto-cl config path

echo "  get and set"
expect H2048 windows vanto-cl get 0 DeviceModelName
windows vanto-cl set 0 Width=1024 || fail "set"
expect 1024 windows vanto-cl get 0 Width
expect "to   2500" windows example-set_exposure 2500 WIN033

echo "  names of files that no code page but UTF-8 has"
mkdir "$WINEPREFIX/drive_c/Größe 東京"
LC_ALL=C.UTF-8 windows vanto-cl xml 0 -o 'C:\Größe 東京\Ω.xml' >/dev/null || fail "xml into such a folder"
[ -s "$WINEPREFIX/drive_c/Größe 東京/Ω.xml" ] || fail "the description is not in such a folder"
LC_ALL=C.UTF-8 expect DeviceModelName windows vanto-cl describe 'C:\Größe 東京\Ω.xml'

echo "  the description, fetched once and then kept"
windows vanto-cl xml 0 -o "$folder/windows.xml" || fail "xml"
CLSERTTY_PATH=$folder/links VANTO_CL_BINDINGS=$folder GENICAM_CACHE=$folder/cache bash -c '
    echo "<CLBindings><Port><ID>COM_Port#com33</ID><Enabled>yes</Enabled></Port></CLBindings>" \
        >"$VANTO_CL_BINDINGS/PortConfiguration_x64.xml"
    "$1" xml 0 -o "$2"' run "$native/vanto-cl" "$folder/native.xml" || fail "xml of this machine's own program"
cmp "$folder/windows.xml" "$folder/native.xml" || fail "Windows got another description"

echo "  the baud rate, negotiated and restored; the cable pulled"
until_is "ok 9600" control baud com33
timeout 300 "$wine_programs/wine64" "$bin/example-removal_callback.exe" >"$folder/removal" 2>&1 </dev/null &
removal=$!
until_is "ok 921600" control baud com33
[ "$(stty -F "$folder/links/com33" speed)" = 921600 ] || fail "the port's speed is not the camera's"
until_is 1 grep -c "pull the cable" "$folder/removal"
control unplug com33 >/dev/null
wait "$removal" || fail "$(cat "$folder/removal")"
grep -q "is gone" "$folder/removal" || fail "no removal callback: $(cat "$folder/removal")"
control plug com33 >/dev/null
add_port com33
windows vanto-cl get 0 Width >/dev/null || fail "get after the cable is back"
until_is "ok 9600" control baud com33

echo "  closing after inactivity and opening again"
expect "after the port was opened again" windows example-auto_close

echo "  1,000 frames of the simulated frame grabber, each with its checksum"
echo '<CLBindings><Port><ID>COM_Port#COM33</ID><Enabled>yes</Enabled><Manufacturer>Marlow</Manufacturer>' \
    '<DeviceSpecificString>SaperaSimulated;FrameRate=100</DeviceSpecificString></Port></CLBindings>' \
    >"$WINEPREFIX/drive_c/bindings/PortConfiguration_x64.xml"
# How many are dropped between them is a matter of the disk.
expect ", 0 cut, 0 failed" windows vanto-cl grab 0 -n 1000 -o 'C:\frames' --format pgm \
    --set Width=256 --set Height=64 --set PixelFormat=Mono8 --buffers 256
# A frame begins with its number and a checksum: sum, and sum of sums, of number, size and the words behind them.
perl -e 'use integer; my $bad = 0;
    for my $path (@ARGV) {
        open my $file, "<:raw", $path or die "$path: $!"; local $/; my $text = <$file>;
        $text =~ s/^P5\s+\d+\s+\d+\s+\d+\s// or die "$path is no image";
        my ($number, $mark) = unpack "q<2", $text;
        my @words = unpack "q<*", substr($text, 16) . "\0" x (8 - length($text) % 8);
        my $sum = $number + length($text) - 16; my $sums = $sum;
        for (@words) { $sum += $_; $sums += $sum }
        my $turned = ($sum << 32) | (($sum >> 32) & 0xFFFFFFFF);
        $bad++ if ($sums ^ $turned) != $mark;
    }
    die "$bad frames with a wrong checksum" if $bad; die "not 1000 frames" if @ARGV != 1000' \
    "$WINEPREFIX"/drive_c/frames/*.pgm || fail "the frames are not those that were sent"
