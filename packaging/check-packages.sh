#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Installs the Debian packages in an empty Debian, uses them as their users do, removes them, and looks for what is left.
# Needs root, for the empty Debian's folders of the system, and Debian's packages.
# usage: packaging/check-packages.sh FOLDER_WITH_PACKAGES
set -euo pipefail
packages=$(cd "$1" && pwd)
cd "$(dirname "${BASH_SOURCE[0]}")/.."
work=$(mktemp -d)
root=$work/root
clean_up() {
    mountpoint -q "$root/proc" && umount "$root/proc"
    mountpoint -q "$root/dev/pts" && umount "$root/dev/pts"
    rm -rf --one-file-system "$work"
}
trap clean_up EXIT
fail() { echo "check-packages: $*" >&2 && exit 1; }
quietly() { "$@" >"$work/log" 2>&1 || { tail -n 60 "$work/log" >&2 && fail "$*"; }; }
inside() { env -i http_proxy="${http_proxy:-}" https_proxy="${https_proxy:-}" PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root TERM=dumb DEBIAN_FRONTEND=noninteractive chroot "$root" "$@"; }
deb() { echo "/packages/$(basename "$packages/$1"_*.deb)"; } # deb PACKAGE: its file, as seen from inside
apt() { quietly inside apt-get -qq -y --no-install-recommends "$@"; }

echo "-- an empty Debian"
apt-get indextargets 'Created-By: Packages' 'Origin: Debian' --format 'deb $(REPO_URI) $(RELEASE) $(COMPONENT)' |
    grep -E '^deb [^ ]+ bookworm(-security|-updates)? main$' | sort -u >"$work/sources.list"
quietly mmdebstrap --mode=root --variant=apt bookworm "$root" "$work/sources.list"
mount -t proc proc "$root/proc"
mkdir -p "$root/dev/pts"
mount -t devpts -o newinstance,ptmxmode=0666 devpts "$root/dev/pts"
ln -sfn pts/ptmx "$root/dev/ptmx"
# It reaches Debian's packages as this machine does.
cp -L /etc/resolv.conf "$root/etc/resolv.conf"
apt-config dump Acquire | grep -E '^Acquire::(http|https|ftp|Retries)' >"$root/etc/apt/apt.conf.d/99machine" || true
quietly inside apt-get -qq update
mkdir "$root/packages"
cp "$packages"/*.deb "$root/packages"
apt install man-db bash-completion
# What is there before; caches, logs and lists of the package manager change with every package.
files() {
    inside find / -xdev \( -path /proc -o -path /packages -o -path /var/cache -o -path /var/log -o -path /var/lib/apt \
        -o -path /var/lib/dpkg -o -path /tmp -o -path /root \) -prune -o -print | sort
}
files >"$work/before"

echo "-- the programs"
apt install "$(deb libvanto)" "$(deb vanto-cl)"
inside vanto-cl --version
listed=$(inside vanto-cl --simulate list)
echo "$listed"
grep -q '^2 cameras found' <<<"$listed" || fail "list"
quietly inside vanto-cl --simulate grab 0 -n 2 -o /tmp/images
[ "$(find "$root/tmp/images" -name '*.png' | wc -l)" -eq 2 ] || fail "grab"
for page in vanto-cl marlow-sim; do
    inside env MANWIDTH=80 man -P cat "$page" | grep -qi "$page" || fail "there is no manual page of $page"
done
completed=$(inside bash -c '. /usr/share/bash-completion/bash_completion; _completion_loader vanto-cl
    COMP_WORDS=(vanto-cl doc) COMP_CWORD=1 COMP_LINE="vanto-cl doc" COMP_POINT=12
    "$(complete -p vanto-cl | sed -n "s/.*-F \([^ ]*\).*/\1/p")" vanto-cl doc vanto-cl; printf "%s\n" "${COMPREPLY[@]}"')
grep -qx 'doctor *' <<<"$completed" || fail "completion gives '$completed'"
inside test -f /etc/vanto/DescriptionBindings.xml
# shellcheck disable=SC2016 # for the shell inside
inside sh -euc '. /etc/profile.d/vanto-gentl.sh && test -f "$GENICAM_GENTL64_PATH/vanto-cl.cti"' ||
    fail "the folder of the GenTL producer is not in the environment"
inside grep -q 'GROUP="dialout"' /usr/lib/udev/rules.d/70-vanto.rules

echo "-- a program that is built with them"
apt install "$(deb libvanto-dev)" "$(deb vanto-doc)" g++ cmake make pkg-config
quietly inside cmake -S /usr/share/doc/vanto/examples -B /tmp/examples
quietly inside cmake --build /tmp/examples -j "${JOBS:-2}"
# shellcheck disable=SC2016 # for the shell inside
quietly inside sh -c 'cd /tmp && g++ /usr/share/doc/vanto/examples/five_images.cpp -o five_images \
    $(pkg-config --cflags --libs vanto-application)'
cp packaging/simulated-cameras.sh "$root/tmp"
for program in /tmp/examples/example-five_images /tmp/five_images; do
    quietly inside bash -euc ". /tmp/simulated-cameras.sh; begin_cameras /usr/bin/marlow-sim /tmp/cameras
        mkdir -p /tmp/five && cd /tmp/five && rm -f *.png; camera_run $program; end_cameras; [ \$(ls *.png | wc -l) -eq 5 ]"
done
inside test -f /usr/share/doc/vanto/reference/index.html || fail "there is no reference"

echo "-- the Python module"
apt install "$(deb python3-vanto)"
inside python3 -c 'import vanto
with vanto.simulate(1), vanto.open() as camera:
    print(camera.name, camera.grab_one().array.shape)' | grep -qx 'Marlow H2048 (SIM00001) (2048, 2048)' || fail "the Python module"

echo "-- removed again"
# As "vanto-cl config init" does where there are serial ports.
inside mkdir -p /etc/Marlow/CLBindings
inside sh -c 'echo "<CLBindings></CLBindings>" >/etc/Marlow/CLBindings/PortConfiguration_x64.xml'
apt purge python3-vanto libvanto libvanto-dev vanto-cl vanto-doc g++ cmake make pkg-config
apt autoremove --purge
files >"$work/after"
# /etc/ld.so.cache and the like are rewritten, not new.
if diff "$work/before" "$work/after" | grep '^>'; then
    fail "these files are left"
fi
echo "nothing is left"
