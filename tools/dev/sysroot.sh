# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

# shellcheck shell=sh
# Debian's packages of other architectures, unpacked below build/, where the cross compilers and the emulator find them.
# apt keeps lists of its own for them: the machine gets no foreign architecture, of which it could install only packages in
# the very versions that it has of its own.

# For building for ARM, and for running the tests there.
cross_packages='g++-arm-linux-gnueabihf g++-aarch64-linux-gnu qemu-user'
sysroot_packages='
  libcli11-dev nlohmann-json3-dev libpugixml-dev libsqlite3-dev libasound2-dev libstdc++6
  libgtest-dev libgmock-dev libcurl4-openssl-dev libssl-dev
'

is_foreign() {
  [ "$1" = armhf ] || [ "$1" = arm64 ]
}

# foreign_apt ARCHITECTURE: makes apt-get work for that architecture, with folders of its own.
foreign_apt() {
  apt=$PWD/build/apt/$1
  rm -rf "$apt"
  mkdir -p "$apt/lists/partial" "$apt/cache/archives/partial"
  : >"$apt/status"
  cat >"$apt/config" <<TEXT
APT { Architecture "$1"; Architectures { "$1"; }; Install-Recommends "no"; Sandbox::User ""; };
Dir { State "$apt"; State::status "$apt/status"; Cache "$apt/cache"; };
TEXT
  APT_CONFIG=$apt/config apt-get -qq -o APT::Update::Error-Mode=any update >"$apt/log" 2>&1 ||
    echo "dev: not every list of packages for $1 could be read; using those that are here" >&2
}

# download_for ARCHITECTURE ARGUMENTS...: downloads with the apt of `foreign_apt`.
download_for() {
  architecture=$1
  shift
  APT_CONFIG=$apt/config apt-get -qq --yes "$@" >>"$apt/log" 2>&1 || {
    grep '^E:' "$apt/log" | tail -n 3 >&2
    echo "dev: the packages for $architecture could not be downloaded, which needs a network; all messages are in $apt/log" >&2
    exit 1
  }
}

# make_sysroot ARCHITECTURE: unpacks the packages into build/sysroot/ARCHITECTURE, unless those of the list are there.
make_sysroot() {
  install_missing "$cross_packages"
  sysroot=build/sysroot/$1
  [ "$(cat "$sysroot/packages" 2>/dev/null)" != "$(printf %s "$sysroot_packages")" ] || return 0
  echo "unpacking Debian's packages for $1 into $sysroot; the machine itself stays as it is"
  foreign_apt "$1"
  # shellcheck disable=SC2086 # a list of words
  download_for "$1" --download-only install $sysroot_packages
  rm -rf "$sysroot" "$sysroot.new"
  mkdir -p "$sysroot.new"
  for package in "$apt/cache/archives"/*.deb; do dpkg-deb --extract "$package" "$sysroot.new"; done
  printf %s "$sysroot_packages" >"$sysroot.new/packages"
  mv "$sysroot.new" "$sysroot"
}
