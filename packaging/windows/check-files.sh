#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Looks into the programs and libraries that were built for Windows: each tells its version, and needs nothing but what
# Windows has and what lies beside it. (The plug-in's tests look closer at the plug-in.)
# usage: packaging/windows/check-files.sh WINDOWS_BUILD
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
build=$(cd "$1" && pwd)
packaging/check-abi.sh "$build"
# shellcheck disable=SC2207 # names without spaces
gentl=($(sed -n 's/^    //p' gentl/exports/exports.def | tr -d '\r'))
cd "$build/bin"
objdump=x86_64-w64-mingw32-objdump
# Libraries of every Windows since Windows 7.
system=" ADVAPI32.dll KERNEL32.dll msvcrt.dll SHELL32.dll SHLWAPI.dll USER32.dll WS2_32.dll "
ours=" CLProtocol.dll GCBase.dll GenApi.dll VantoApplication.dll VantoBase.dll VantoImage.dll "
tl=vanto/tl/VantoCLSer.dll
plugin=vanto/plugins/SaperaFgPlugin_MD_VC100.dll
driver=vanto/clprotocol/Win64_x64/MarlowCLProtocol.dll
producer=vanto/gentl/vanto-cl.cti
failures=0
complain() { echo "$*" >&2 && failures=$((failures + 1)); }

for file in $ours clsertty.dll $tl $plugin $driver $producer vanto-cl.exe example-*.exe; do
    [ -f "$file" ] || { complain "$file was not built" && continue; }
    for library in $($objdump -p "$file" | sed -n 's/.*DLL Name: //p'); do
        case $file in
            clsertty.dll | "$plugin" | "$driver" | "$producer") allowed=$system ;; # others' programs load them, from wherever they lie
            *) allowed=$system$ours ;;
        esac
        [[ $allowed == *" $library "* ]] || complain "$file needs $library"
    done
    $objdump -h "$file" | grep -q '\.rsrc' || complain "$file does not tell its version"
done

# expect_exports FILE NAME...: exactly these
expect_exports() {
    local file=$1 names
    shift
    names=$($objdump -p "$file" | sed -n '/\[Ordinal\/Name Pointer\] Table/,/^$/p' | sed -n 's/^\t\[ *[0-9]*\] //p' | sort)
    [ "$names" = "$(printf '%s\n' "$@" | sort)" ] || complain "$file exports" $names
}
expect_exports $plugin CreateFrameGrabberObject DestroyFrameGrabberObject
expect_exports $driver clpCloseLib clpContinueWriteRegister clpDisconnect clpGetCLProtocolVersion clpGetErrorText \
    clpGetEventData clpGetParam clpGetShortDeviceIDTemplates clpGetXMLDescription clpGetXMLDigest clpGetXMLIDs clpInitLib \
    clpIsParamSupported clpProbeDevice clpReadRegister clpSetParam clpWriteRegister
expect_exports $producer "${gentl[@]}"
expect_exports clsertty.dll clFlushPort clGetErrorText clGetManufacturerInfo clGetNumBytesAvail clGetNumSerialPorts \
    clGetSerialPortIdentifier clGetSupportedBaudRates clSerialClose clSerialInit clSerialRead clSerialWrite clSetBaudRate \
    clSetParity

# Plain names of the plug-in; its class has its own, which begin with _Z.
plain=$($objdump -p $tl | sed -n '/\[Ordinal\/Name Pointer\] Table/,/^$/p' | sed -n 's/^\t\[ *[0-9]*\] //p' | grep -v '^_Z' |
    sort | tr '\n' ' ')
[ "$plain" = "Create Destroy GetTLInfoList " ] || complain "$tl exports $plain"
[ $failures -eq 0 ]
