#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Installs every Debian 12 package that building, running and testing Tolvane needs.
# This is the one list; the README and .ci/run both call this script.
set -euo pipefail

packages=(
    # toolchain
    build-essential cmake ninja-build pkg-config clang-format
    googletest libgtest-dev libgmock-dev libbenchmark-dev
    # libraries
    qt6-base-dev qt6-base-dev-tools qt6-tools-dev qt6-tools-dev-tools qt6-l10n-tools
    qt6-webengine-dev qt6-webengine-dev-tools qt6-svg-dev
    libplist-dev libsodium-dev libpoppler-qt6-dev libfontconfig-dev libfreehand-dev
    librevenge-dev libxkbcommon-dev libexempi-dev libarchive-dev libmwaw-dev libpng-dev
    libxcb-damage0-dev
    # running and testing
    python3 dbus dbus-x11 xvfb xauth x11-utils xdotool openssl ghostscript fonts-dejavu-core
    poppler-utils qt6-image-formats-plugins clang libclang-rt-14-dev
    desktop-file-utils libxml2-utils shared-mime-info zlib1g-dev
    # the desktop's own tools, as the registration tests use them (xdg-open tells a file's type
    # with mimetype from libfile-mimeinfo-perl)
    xdg-utils libglib2.0-bin libfile-mimeinfo-perl
    # the Debian package and its checks (CPack finds the executables to scan with file)
    dpkg-dev lintian file
)

missing=()
for p in "${packages[@]}"; do
    dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed' || missing+=("$p")
done
[ ${#missing[@]} -eq 0 ] && exit 0

sudo=""
[ "$(id -u)" -eq 0 ] || sudo="sudo"
$sudo apt-get update -qq
DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}"
