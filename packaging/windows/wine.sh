# SPDX-License-Identifier: Apache-2.0
# Shell functions about Wine and the libraries for Windows. Sourced by bash.

# The folder of the libraries for Windows: one for all trees of this user.
windows_libraries() { echo "${VANTO_WINDOWS_LIBRARIES:-${XDG_CACHE_HOME:-$HOME/.cache}/vanto-windows}"; }

wine_programs=/usr/lib/wine
wine() { "$wine_programs/wine64" "$@"; }
wineserver() { "$wine_programs/wineserver64" "$@"; }

# start_wine FOLDER: a new Windows in that folder, without a display, whose server stays until end_wine.
start_wine() {
    export WINEPREFIX=$1 WINEARCH=win64 WINEDEBUG=-all
    export WINEDLLOVERRIDES="mscoree,mshtml,winemenubuilder.exe=d"
    unset DISPLAY WAYLAND_DISPLAY
    mkdir -p "$WINEPREFIX" && wineserver -p >/dev/null 2>&1 && timeout 300 "$wine_programs/wine64" wineboot -i >/dev/null 2>&1 && [ -d "$WINEPREFIX/dosdevices" ]
}

# Ends all that runs in the prefix.
end_wine() {
    [ -n "${WINEPREFIX:-}" ] || return 0
    wineserver -k
    timeout 30 "$wine_programs/wineserver64" -w
}
