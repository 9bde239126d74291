# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

# shellcheck shell=sh
# Debian's packages of the last commit.

package_packages='
  dpkg-dev debhelper dh-python lintian
'
reproduce_packages='reprotest disorderfs locales-all'

# Exports the last commit into the folder, with what Debian's tools want to find there. The player is downloaded before,
# because a package is built without a network.
export_tree() {
  rm -rf "$1"
  mkdir -p "$1"
  git archive HEAD | tar -x -C "$1"
  cp -R "$1/packaging/debian" "$1/debian"
  "$1/packaging/debian-changelog" >"$1/debian/changelog"
  host/share/install-player
  cp -R host/share/node_modules "$1/host/share/"
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

# package [--arch ARCHITECTURE]: builds the packages into build/packages/ARCHITECTURE, and lets lintian judge them.
package() {
  architecture=$(dpkg --print-architecture)
  case $#${1:-} in
    0) ;;
    2--arch) architecture=$2 ;;
    *) echo 'dev: package takes only --arch ARCHITECTURE' >&2; exit 2 ;;
  esac
  folder=build/packages/$architecture
  tree=$folder/libusbdevlib
  rm -rf "$folder"
  export_tree "$tree"
  unchecked=
  if is_foreign "$architecture"; then
    add_sysroot "$tree" "$architecture"
    unchecked=--no-check-builddeps # they are not installed, but in the sysroot
  fi
  echo "== building the packages, $architecture"
  # Time stamps in the packages are those of the commit, so that everyone gets the same packages.
  SOURCE_DATE_EPOCH=$(git log -1 --format=%ct)
  export SOURCE_DATE_EPOCH
  (
    cd "$tree"
    DEB_BUILD_OPTIONS="parallel=$(nproc)" \
      dpkg-buildpackage --build=binary --no-sign $unchecked --host-arch "$architecture" >../build.log 2>&1
  ) || { tail -n 40 "$folder/build.log" >&2; exit 1; }
  rm -rf "$tree"
  packaging/sbom "$folder"
  echo "== lintian, $architecture"
  lintian --fail-on error,warning --pedantic --tag-display-limit 0 "$folder"/*.changes
  ls -l "$folder"/*.deb
}

# Builds the packages twice with all that reprotest can change: folders, users' settings, languages, the order of files, the
# kernel's and the machine's names, the number of processors. It prints the checksums, and fails if they differ. The clock
# is the real one, because ninja compares the times of files; the user is the same, because a second one may be missing.
reproduce() {
  tree=build/reproduce/libusbdevlib
  export_tree "$tree"
  SOURCE_DATE_EPOCH=$(git log -1 --format=%ct)
  export SOURCE_DATE_EPOCH
  # A compiler's cache would return what the first build made.
  unset CMAKE_C_COMPILER_LAUNCHER CMAKE_CXX_COMPILER_LAUNCHER
  DEB_BUILD_OPTIONS=noautodbgsym reprotest --no-diffoscope --vary=-time,-user_group \
    -c 'dpkg-buildpackage --build=binary --no-sign' "$tree" '../*.deb' -- null >build/reproduce/log 2>&1 ||
    { tail -n 40 build/reproduce/log >&2; exit 1; }
  tail -n 20 build/reproduce/log
}
