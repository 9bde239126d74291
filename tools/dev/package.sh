# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

# shellcheck shell=sh
# Debian's packages of the last commit.

package_packages='
  dpkg-dev debhelper dh-python lintian
'
reproduce_packages='reprotest disorderfs locales-all'

# Exports the last commit into the folder, with what Debian's tools want to find there. The libraries of the web pages are
# downloaded before, because a package is built without a network.
export_tree() {
  host/web/install-libraries
  rm -rf "$1"
  mkdir -p "$1"
  git archive HEAD | tar -x -C "$1"
  cp -R "$1/packaging/debian" "$1/debian"
  "$1/packaging/debian-changelog" >"$1/debian/changelog"
  cp -R host/web/libraries "$1/host/web/"
  # Time stamps in the packages are those of the commit, so that everyone gets the same packages.
  SOURCE_DATE_EPOCH=$(git log -1 --format=%ct)
  export SOURCE_DATE_EPOCH
}

# Shows the exported tree in $1 the libraries of an architecture, and to which packages they belong.
add_sysroot() {
  make_sysroot "$2"
  mkdir -p "$1/build"
  ln -s "$PWD/build/sysroot" "$1/build/"
  for package in "build/apt/$2/cache/archives"/*.deb; do
    dpkg-deb --info "$package" shlibs 2>/dev/null || true # not every package has libraries
  done >"$1/debian/shlibs.local"
}

# Builds the exported tree in $1 for an architecture; the packages are written beside it.
build_for() {
  unchecked=
  if is_foreign "$2"; then
    add_sysroot "$1" "$2"
    unchecked=--no-check-builddeps # they are not installed, but in the sysroot
  fi
  (
    cd "$1" && DEB_BUILD_OPTIONS="parallel=$(nproc) ${DEB_BUILD_OPTIONS:-}" \
      dpkg-buildpackage --build=binary --no-sign $unchecked --host-arch "$2" >../build.log 2>&1
  ) || { tail -n 40 "$1/../build.log" >&2; exit 1; }
}

# package [--arch ARCHITECTURE]: builds the packages into build/packages/ARCHITECTURE, and lets lintian judge them unless
# Debian's variable DEB_BUILD_OPTIONS contains "nocheck".
package() {
  own=$(dpkg --print-architecture)
  case $#,${1:-} in
    0,) architecture=$own ;;
    2,--arch) architecture=$2 ;;
    *) echo 'dev: package takes only --arch ARCHITECTURE' >&2; exit 2 ;;
  esac
  # It is the name of a folder, of which files are removed.
  [ "$architecture" = "$own" ] || is_foreign "$architecture" ||
    { echo "dev: '$architecture' is not an architecture; there are $own, armhf and arm64" >&2; exit 2; }
  install_missing "$build_packages" "$host_packages" "$manual_packages" "$package_packages"
  folder=build/packages/$architecture
  tree=$folder/libusbdevlib
  export_tree "$tree"
  rm -f "$folder"/*.* # of an earlier build
  echo "== building the packages, $architecture"
  build_for "$tree" "$architecture"
  rm -rf "$tree"
  packaging/sbom "$folder"
  case " ${DEB_BUILD_OPTIONS:-} " in
    *' nocheck '*) ;;
    *)
      echo "== lintian, $architecture"
      lintian --fail-on error,warning --pedantic --tag-display-limit 0 "$folder"/*.changes
      ;;
  esac
  ls -l "$folder"/*.deb
}

# Builds the packages twice with all that reprotest can change: folders, users' settings, languages, the order of files, the
# kernel's and the machine's names, the number of processors. It prints the checksums, and fails if they differ. The clock
# is the real one, because ninja compares the times of files; the user is the same, because a second one may be missing.
reproduce() {
  [ $# -eq 0 ] || { echo 'dev: reproduce takes no arguments' >&2; exit 2; }
  [ "$(id -u)" -eq 0 ] ||
    { echo 'dev: reproduce takes root, which can give one of the builds other folders and another name of the machine' >&2; exit 1; }
  install_missing "$build_packages" "$host_packages" "$manual_packages" "$package_packages" "$reproduce_packages"
  tree=build/reproduce/libusbdevlib
  export_tree "$tree"
  # A compiler's cache would return what the first build made.
  unset CMAKE_C_COMPILER_LAUNCHER CMAKE_CXX_COMPILER_LAUNCHER
  DEB_BUILD_OPTIONS=noautodbgsym reprotest --no-diffoscope --vary=-time,-user_group \
    -c 'dpkg-buildpackage --build=binary --no-sign' "$tree" '../*.deb' -- null >build/reproduce/log 2>&1 ||
    { tail -n 40 build/reproduce/log >&2; exit 1; }
  tail -n 20 build/reproduce/log
}
