# SPDX-License-Identifier: Apache-2.0
# Shell functions about a simulated camera with a frame grabber for programs under test. Sourced by bash.
cameras_pid=

# begin_cameras MARLOW_SIM FOLDER: a camera cam0 with the serial number 24000001, as long as end_cameras is not called
begin_cameras() {
    cameras=$2
    mkdir -p "$cameras/links" "$cameras/configuration"
    echo '<CLBindings><Port><ID>COM_Port#cam0</ID><Enabled>yes</Enabled><Manufacturer>Marlow</Manufacturer>
<DeviceSpecificString>SaperaSimulated;FrameRate=100</DeviceSpecificString></Port></CLBindings>' \
        >"$cameras/configuration/PortConfiguration_x64.xml"
    "$1" --links "$cameras/links" --camera cam0,model=H2048,serial=24000001 >"$cameras/greeting" &
    cameras_pid=$!
    until grep -q ready "$cameras/greeting"; do
        kill -0 "$cameras_pid" || return 1
        sleep 0.05
    done
}

end_cameras() {
    [ -z "$cameras_pid" ] || { kill "$cameras_pid" && wait "$cameras_pid"; } 2>/dev/null || true
    cameras_pid=
}

# camera_run COMMAND...: a program that finds the camera
camera_run() {
    CLSERTTY_PATH=$cameras/links VANTO_CL_BINDINGS=$cameras/configuration GENICAM_CACHE=$cameras/cache timeout 60 "$@"
}
