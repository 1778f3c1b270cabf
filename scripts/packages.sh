# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 The Pallimo authors
#
# Which packages the commands need, and how a missing one is installed. Sourced by run, test and
# .ci/run. Everything it says goes to standard error: standard output belongs to the app.

build_packages_debian="g++ cmake ninja-build pkg-config qt6-base-dev libplist-dev libdbus-1-dev
  nlohmann-json3-dev prometheus-cpp-dev"
test_packages_debian="dbus-daemon libgtest-dev libvalijson-dev locales mandoc prometheus python3
  xvfb xdotool"
check_packages_debian="git clang-16 libc++-16-dev libc++abi-16-dev libclang-rt-16-dev lld-16 llvm-16
  musl-dev clang-format-16 clang-tidy-16 googletest libbenchmark-dev"
count_packages_debian="libbenchmark-dev valgrind"
picture_packages_debian="fonts-inter imagemagick librsvg2-bin optipng xdotool xvfb"
soak_packages_debian="xdotool xvfb"
measure_packages_debian="conky-std dbus-daemon fonts-inter gnome-system-monitor openbox xdotool xvfb"

build_packages_brew="cmake ninja pkg-config qt libplist nlohmann-json prometheus-cpp"
test_packages_brew="googletest prometheus valijson"
check_packages_brew="llvm@16 clang-format google-benchmark"
picture_packages_brew="librsvg optipng"

say() { printf '%s\n' "$*" >&2; }

# How to become root, in $root_prefix; status 1 and one line when there is no way. The
# arguments are what the user would have to run.
find_root() {
  root_prefix=""
  [ "$(id -u)" -ne 0 ] || return 0
  if command -v sudo >/dev/null 2>&1; then
    root_prefix=sudo
    return 0
  fi
  say "Installing packages needs root, and there is no sudo. As root, run:"
  say "  $*"
  return 1
}

apt_install() {
  case " $* " in
    *" prometheus "*) without_its_service apt_install_now "$@" ;;
    *) apt_install_now "$@" ;;
  esac
}

apt_install_now() {
  # shellcheck disable=SC2086
  $root_prefix env DEBIAN_FRONTEND=noninteractive \
    apt-get install -y -qq --no-install-recommends "$@" >&2
}

# Who answers when a package that is being installed asks whether its service may start.
service_policy=/usr/sbin/policy-rc.d

# without_its_service COMMAND...: the Prometheus server is for the tests, which start one of their
# own; what COMMAND installs does not start now, nor with the machine. In a shell of its own, which
# takes its answer back however it ends.
without_its_service() (
  status=0
  if [ ! -e "$service_policy" ]; then
    trap remove_service_policy EXIT
    # Once more without the trap, so that whoever waits for this shell learns of the signal.
    trap 'remove_service_policy; trap - EXIT INT; kill -INT "$BASHPID"' INT
    trap 'remove_service_policy; trap - EXIT TERM; kill -TERM "$BASHPID"' TERM
    printf '#!/bin/sh\nexit 101\n' | $root_prefix tee "$service_policy" >/dev/null
    $root_prefix chmod 755 "$service_policy"
  fi
  "$@" || status=$?
  [ ! -d /run/systemd/system ] || $root_prefix systemctl --quiet disable prometheus >&2 || true
  exit "$status"
)

remove_service_policy() { $root_prefix rm -f "$service_policy"; }

# install_debian PACKAGE...: installs those that are missing.
install_debian() {
  local package missing=""
  for package in "$@"; do
    # A package of two architectures prints its state twice.
    case "$(dpkg-query -W -f='${db:Status-Status}\n' "$package" 2>/dev/null)" in
      installed*) ;;
      *) missing="$missing $package" ;;
    esac
  done
  [ -n "$missing" ] || return 0
  say "Installing:$missing"
  find_root "apt-get install -y --no-install-recommends$missing" || return 1
  # shellcheck disable=SC2086
  $root_prefix apt-get update -qq >&2 || say "apt-get update failed; trying with the lists at hand."
  # shellcheck disable=SC2086
  apt_install $missing && return 0
  # One by one, to be able to name the one that can't be had.
  for package in $missing; do
    apt_install "$package" || {
      say "Could not install $package. The command was:"
      say "  apt-get install -y --no-install-recommends $package"
      return 1
    }
  done
}

# install_brew FORMULA...: installs those that are missing.
install_brew() {
  local formula
  command -v brew >/dev/null 2>&1 || {
    say "Homebrew is missing; see https://brew.sh"
    return 1
  }
  for formula in "$@"; do
    brew list --versions "$formula" >/dev/null 2>&1 || brew install "$formula" >&2 || {
      say "Could not install $formula. The command was:"
      say "  brew install $formula"
      return 1
    }
  done
}

# install_packages SET...: SET is build, test, check, count, picture, measure or soak.
install_packages() {
  local set manager packages=""
  if command -v dpkg-query >/dev/null 2>&1; then
    manager=debian
  else
    manager=brew
  fi
  for set in "$@"; do
    eval "packages=\"\$packages \$${set}_packages_$manager\""
  done
  # shellcheck disable=SC2086
  "install_$manager" $packages
}
