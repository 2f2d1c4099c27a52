# SPDX-License-Identifier: Apache-2.0
# Shell functions that demo.sh and test.sh share. Sourced by bash, in the project's root.

# Sanitized environment: what a user has set for an installation of theirs must not reach the tree's own programs.
unset VANTO_ROOT VANTO_CL_BINDINGS VANTO_USE_TL VANTO_XML_BINDINGS VANTO_LOG
unset GENICAM_CLPROTOCOL GENICAM_CACHE GENICAM_GENTL64_PATH CLSERIALPATH CLSERTTY_PATH
export CCACHE_BASEDIR="$PWD" CCACHE_NOHASHDIR=1
# What the compiler cache asks for where headers are precompiled: no source of ours looks at the time of its compiling.
export CCACHE_SLOPPINESS=pch_defines,time_macros

# packages_of STEP...: the Debian packages that packaging/debian-packages.txt lists for the steps.
packages_of() {
    local step
    for step in "$@"; do
        if ! grep -qx "\[$step\]" packaging/debian-packages.txt; then
            echo "packaging/debian-packages.txt lists nothing for the step '$step'" >&2
            return 1
        fi
        sed -n "/^\[$step\]/,/^\[/{/^[a-z]/s/[[:space:]].*//p}" packaging/debian-packages.txt
    done
}

# install_missing_packages STEP...: installs the packages of the steps that are missing; where none is, nothing is asked of
# apt or the network.
install_missing_packages() {
    local missing=() packages package
    packages=$(packages_of "$@") || return 1
    for package in $packages; do
        [ "$(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null)" = installed ] || missing+=("$package")
    done
    [ ${#missing[@]} -eq 0 ] && return 0
    local root=()
    if [ "$(id -u)" -ne 0 ]; then
        if ! command -v sudo >/dev/null; then
            echo "These packages are missing, and there is no sudo to install them with: ${missing[*]}" >&2
            return 1
        fi
        root=(sudo)
    fi
    echo "Installing ${missing[*]}"
    "${root[@]}" apt-get update -qq &&
        "${root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}"
}

# Seconds as people read them.
duration() { [ "$1" -lt 60 ] && echo "$1 s" || printf '%d min %02d s\n' $(($1 / 60)) $(($1 % 60)); }
