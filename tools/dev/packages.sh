# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

# shellcheck shell=sh
# The Debian packages that building, running and testing need, and the installation of those that are missing.

build_packages='
  cmake ninja-build ccache g++ pkg-config python3
  libgtest-dev libgmock-dev libcurl4-openssl-dev libssl-dev
  libpugixml-dev libsqlite3-dev libasound2-dev libcli11-dev nlohmann-json3-dev
  libpython3-dev python3-cffi
'
# For the sandboxed host.
host_packages='
  bubblewrap iproute2 procps python3-tornado python3-argon2 python3-pyudev python3-systemd python3-paho-mqtt
  python3-prometheus-client ffmpeg fonts-dejavu-core socat
'
# Some packages of nodejs contain npm, and conflict with the package npm.
command -v npm >/dev/null || host_packages="$host_packages npm"
test_packages='
  python3-pytest python3-selenium chromium-headless-shell chromium-driver curl strace zsh fish clang musl-tools
  python3-clang abigail-tools python3-license-expression mypy umockdev gir1.2-umockdev-1.0 python3-gi systemd
  python3-jsonschema python3-yaml python3-pil nginx-light mosquitto mosquitto-clients prometheus openssl
'
# For the guest with a kernel of its own.
kernel_packages='qemu-system-x86 mmdebstrap openssl'
coverage_packages='gcovr'
bench_packages='gnuplot-nox'
fuzz_packages='clang libclang-rt-dev llvm python3-tornado'
# For the manual and the tests of the documents.
manual_packages='doxygen pandoc man-db groff mandoc'
check_packages='clang clang-format clang-tidy shellcheck reuse'

package_log=build/packages.log

# give_up REASON: prints what can be done by hand, and exits.
give_up() {
  cat >&2 <<TEXT

dev: $1.

You can install the missing packages by hand, as root and with a network:
  apt-get update && apt-get install --no-install-recommends $wanted
Or build only the library, which needs a C and a C++ compiler and CMake:
  cmake -B build -DUSBDEV_LIBRARY_ONLY=ON && cmake --build build
TEXT
  exit 1
}

# Prints those packages of the list that are not installed.
missing() {
  # shellcheck disable=SC2016 # the format is dpkg-query's own
  installed=$(dpkg-query -W -f='${Package} ${db:Status-Status}\n' "$@" 2>/dev/null | sed -n 's/ installed$//p')
  printf '%s\n' "$@" | grep -vxF -e "$installed" | tr '\n' ' '
}

as_root() {
  if [ "$(id -u)" -eq 0 ]; then "$@"
  elif [ -t 0 ]; then sudo "$@"
  else sudo --non-interactive "$@"
  fi
}

expect_rights() {
  command -v apt-get >/dev/null || give_up 'packages can be installed only on Debian, and this machine has no apt-get'
  [ "$(id -u)" -eq 0 ] || command -v sudo >/dev/null ||
    give_up 'only root can install packages, and this machine has no sudo'
  as_root true || give_up 'only root can install packages, and sudo refuses'
}

# Prints how many packages would be installed and how large they are, as apt reports it.
print_sizes() {
  # shellcheck disable=SC2086 # a list of words
  plan=$(LC_ALL=C apt-get -o Debug::NoLocking=1 --assume-no --no-install-recommends install $wanted 2>&1) || true
  printf '%s\n' "$plan" | grep '^E:' >&2 &&
    give_up 'apt does not find the packages in its lists, which need a network and Debian 12'
  printf '%s\n' "$plan" | sed -n \
    -e 's/.* \([0-9]*\) newly installed,.*/packages to install: \1, including those that they need/p' \
    -e 's/^Need to get \(.*\) of archives\./to download: \1/p' \
    -e 's/^After this operation, \(.*\) of additional disk space will be used\./disk space: \1/p'
}

# Asks on a terminal; anywhere else nobody could answer.
expect_consent() {
  [ -z "$yes" ] && [ -t 0 ] || return 0
  printf 'install them? [Y/n] ' >&2
  read -r answer || answer=n
  case $answer in
    '' | [Yy]*) ;;
    *) give_up 'nothing was installed' ;;
  esac
}

# shellcheck disable=SC2016 # the arguments are filled in later
apt_install='DEBIAN_FRONTEND=noninteractive exec apt-get --yes --no-install-recommends "$@"'

install_with() {
  # shellcheck disable=SC2086 # a list of words
  as_root sh -c "$apt_install" sh "$@" install $wanted
}

# The same, but all output goes to the log, and the percents are printed as lines that `shown` counts. The percents have
# their own descriptor, because apt-get writes to it without waiting, and a package's script that used the same one would
# fail. It is opened after sudo, which closes all descriptors but the standard ones.
install_counting() {
  # shellcheck disable=SC2086 # a list of words
  {
    as_root sh -c "exec 3>&1 >>$package_log 2>&1 </dev/null; $apt_install" sh -o APT::Status-Fd=3 "$@" install $wanted ||
      echo 'apt-get failed'
  } | sed -un -e 's/^[dp][lm]status:[^:]*:\([0-9]*\).*/[\1\/100] /p' -e '/^apt-get failed$/q1'
}

# apt_step LABEL REASON OPTIONS...: downloads or installs; if that fails, gives up and prints the reason.
apt_step() {
  label=$1 reason=$2
  shift 2
  if [ -t 1 ]; then
    install_with "$@" || give_up "$reason"
  elif ! shown "$label" install_counting "$@"; then
    grep '^E:' "$package_log" | tail -n 3 >&2
    give_up "$reason; all messages are in $package_log"
  fi
}

# Tests start these servers for themselves. Debian starts each as soon as it is installed, two of them for the whole network.
keep_servers_from_starting() {
  command -v systemctl >/dev/null || return 0
  for server in mosquitto nginx prometheus; do
    case " $wanted" in
      *" $server "* | *" $server-light "*)
        as_root systemctl mask --quiet "$server.service"
        echo "$server is not started as a service; 'systemctl unmask $server' allows that"
        ;;
    esac
  done
}

install_missing() {
  # shellcheck disable=SC2048,SC2086 # the arguments are lists of words
  wanted=$(missing $*)
  [ -n "$wanted" ] || return 0
  echo "missing packages: $wanted"
  expect_rights
  echo 'reading the lists of packages'
  as_root apt-get -qq -o APT::Update::Error-Mode=any update ||
    echo 'dev: not every list could be read; using those that are here' >&2
  print_sizes
  expect_consent
  mkdir -p build
  : >"$package_log"
  apt_step downloading 'the packages could not be downloaded, which needs a network' --download-only
  keep_servers_from_starting
  apt_step installing 'apt-get could not install the packages'
}
