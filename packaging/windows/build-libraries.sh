#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Builds the libraries that the tree uses, static and for Windows, from Debian's sources:
#     packaging/windows/build-libraries.sh FOLDER
# FOLDER gets include/ and lib/. A folder that is complete and belongs to this very script is left as it is.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
libraries=$(mkdir -p "$1" && cd "$1" && pwd)
stamp=$libraries/made-by
made_by=$(cat packaging/windows/build-libraries.sh cmake/toolchains/windows-mingw.cmake | sha1sum)
[ "$(cat "$stamp" 2>/dev/null)" = "$made_by" ] && exit 0
rm -rf "${libraries:?}"/{include,lib,bin,share,cmake,made-by}
mkdir -p "$libraries/include" "$libraries/lib/pkgconfig"

jobs=${JOBS:-$(nproc)}
toolchain=$PWD/cmake/toolchains/windows-mingw.cmake
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir "$work/newest" "$work/release"

# A list of Debian's sources, beside the machine's own, whose lists stay as they are: those with all fixes, and those of
# the release alone, for mirrors whose updates lack sources.
apt_sources() { # apt_sources FOLDER ARGUMENTS...
    local folder=$work/$1
    shift
    apt-get -qq -o "Dir::Etc::sourcelist=$folder/sources.list" -o Dir::Etc::sourceparts=/dev/null \
        -o "Dir::State::lists=$folder/lists" -o APT::Sandbox::User= "$@"
}

keyring=/usr/share/keyrings/debian-archive-keyring.gpg
line="deb-src [signed-by=$keyring] \$(REPO_URI) \$(RELEASE) \$(COMPONENT)"
apt-get indextargets 'Created-By: Packages' 'Origin: Debian' --format "$line" | sort -u >"$work/newest/sources.list"
grep -E ' bookworm main$' "$work/newest/sources.list" >"$work/release/sources.list"
mkdir "$work/newest/lists" "$work/release/lists"
apt_sources newest update
apt_sources release update

fetch() { # fetch PACKAGE: its sources in $work/PACKAGE
    mkdir "$work/$1"
    (cd "$work/$1" && { apt_sources newest source "$1" || apt_sources release source "$1"; } >"$work/$1.log" 2>&1) ||
        { cat "$work/$1.log" && return 1; }
}

build() { # build SOURCES NAME TARGET OPTIONS...: a library by its own CMake files
    local sources=$1 name=$2 target=$3 installed=${INSTALLED_FOLDER:-.}
    shift 3
    echo "  $name"
    {
        cmake -G Ninja -S "$sources" -B "$work/$name.build" -DCMAKE_TOOLCHAIN_FILE="$toolchain" \
            -DVANTO_WINDOWS_LIBRARIES="$libraries" -DCMAKE_BUILD_TYPE=Release -DBUILD_SHARED_LIBS=OFF \
            -DCMAKE_INSTALL_PREFIX="$libraries" -DCMAKE_INSTALL_LIBDIR=lib -DCMAKE_C_FLAGS=-w -DCMAKE_CXX_FLAGS=-w \
            "${launcher[@]}" "$@" &&
            cmake --build "$work/$name.build" -j "$jobs" --target "$target" &&
            cmake --install "$work/$name.build/$installed"
    } >"$work/$name.log" 2>&1 || { tail -n 100 "$work/$name.log" && return 1; }
    rm -rf "$work/$name.build"
}

build_package() { # build_package PACKAGE FOLDER TARGET OPTIONS...
    local package=$1 folder=$2 target=$3
    shift 3
    [ -d "$work/$package" ] || fetch "$package"
    build "$(echo "$work/$package"/*/"$folder")" "$package" "$target" "$@"
}

launcher=()
export CCACHE_BASEDIR=$work CCACHE_NOHASHDIR=1
command -v ccache >/dev/null && launcher=(-DCMAKE_C_COMPILER_LAUNCHER=ccache -DCMAKE_CXX_COMPILER_LAUNCHER=ccache)

# What Debian has for this compiler, of it only what is linked into our files.
system=/usr/x86_64-w64-mingw32
cp "$system"/lib/{libz,libgcrypt,libgpg-error}.a "$libraries/lib"
cp "$system"/include/{zlib,zconf,gcrypt,gpg-error}.h "$libraries/include"
cat >"$libraries/lib/pkgconfig/libgcrypt.pc" <<PC
Name: libgcrypt
Description: General purpose cryptographic library
Version: $(sed -n 's/^Version: //p' "$system/lib/pkgconfig/libgcrypt.pc")
Cflags: -I$libraries/include
Libs: -L$libraries/lib -lgcrypt -lgpg-error -lws2_32
PC

# What is headers only, whatever the system.
ln -sfn /usr/include/boost "$libraries/include/boost"
ln -sfn /usr/include/CLI "$libraries/include/CLI"
ln -sfn /usr/include/nlohmann "$libraries/include/nlohmann"
mkdir -p "$libraries/lib/cmake"
for package in CLI11 nlohmann_json; do
    folder=$(dirname "$(find /usr/lib /usr/share -name "${package}Config.cmake" -print -quit)")
    [ -n "$folder" ] && cp -r "$folder" "$libraries/lib/cmake/"
done

# Its documentation, which is not built, would be installed as well.
INSTALLED_FOLDER=src build_package xerces-c "" xerces-c -Dnetwork=OFF -Dtranscoder=windows -Dmessage-loader=inmemory
build_package fmtlib "" fmt -DFMT_TEST=OFF -DFMT_DOC=OFF
build_package spdlog "" spdlog -DSPDLOG_FMT_EXTERNAL=ON -DSPDLOG_BUILD_EXAMPLE=OFF
build_package pugixml "" all
build_package libzip "" all -DBUILD_TOOLS=OFF -DBUILD_REGRESS=OFF -DBUILD_EXAMPLES=OFF -DBUILD_DOC=OFF \
    -DENABLE_GNUTLS=OFF -DENABLE_MBEDTLS=OFF -DENABLE_OPENSSL=OFF -DENABLE_WINDOWS_CRYPTO=OFF -DENABLE_COMMONCRYPTO=OFF \
    -DENABLE_BZIP2=OFF -DENABLE_LZMA=OFF -DENABLE_ZSTD=OFF
build_package libpng1.6 "" png_static -DPNG_SHARED=OFF -DPNG_TESTS=OFF -DPNG_EXECUTABLES=OFF
build_package tiff "" all -Dtiff-tools=OFF -Dtiff-tests=OFF -Dtiff-contrib=OFF -Dtiff-docs=OFF -Dcxx=OFF -Djpeg=OFF \
    -Dold-jpeg=OFF -Dzstd=OFF -Dlzma=OFF -Dwebp=OFF -Djbig=OFF -Dlerc=OFF -Dlibdeflate=OFF
build /usr/src/googletest googletest all -DBUILD_GMOCK=ON

echo "$made_by" >"$stamp"
