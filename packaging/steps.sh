# SPDX-License-Identifier: Apache-2.0
# Shell functions that demo.sh and test.sh share. Sourced by bash, in the project's root.

# Sanitized environment: what a user has set for an installation of theirs must not reach the tree's own programs.
unset VANTO_ROOT VANTO_CL_BINDINGS VANTO_USE_TL VANTO_XML_BINDINGS VANTO_LOG
unset GENICAM_CLPROTOCOL GENICAM_CACHE CLSERIALPATH CLSERTTY_PATH
export CCACHE_BASEDIR="$PWD" CCACHE_NOHASHDIR=1

# install_missing_packages [LIST...]: installs the Debian packages of the lists, packaging/debian-packages.txt where none is
# named, that are missing; without any, nothing is asked of apt or the network.
install_missing_packages() {
    local missing=() package
    [ $# -gt 0 ] || set -- packaging/debian-packages.txt
    for package in $(sed -e 's/#.*//' -e 's/[[:space:]]//g' -e '/^$/d' "$@"); do
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
