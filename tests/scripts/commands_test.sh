#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 The Pallimo authors
#
# commands_test.sh ROOT   what ./run and the package installer do, with the system's programs
# replaced by ones that write down how they were called.
set -uo pipefail
source_root=$1
sandbox=$(mktemp -d)
trap 'rm -rf "$sandbox"' EXIT
root="$sandbox/a root" # with a space
passed=0
failed=0

expect() { # NAME EXPECTED ACTUAL
  if [ "$2" = "$3" ]; then
    passed=$((passed + 1))
  else
    failed=$((failed + 1))
    printf 'FAILED: %s\n  expected: %s\n  actual:   %s\n' "$1" "$2" "$3"
  fi
}

fake() { # NAME BODY: a program in the sandbox's PATH
  printf '#!/bin/bash\n%s\n' "$2" >"$sandbox/bin/$1"
  chmod +x "$sandbox/bin/$1"
}

set_up() {
  rm -rf "$root" "$sandbox/bin" "$sandbox/calls"
  mkdir -p "$root/scripts" "$root/build/release/bin" "$sandbox/bin"
  cp "$source_root/run" "$root/run"
  cp "$source_root/scripts/"*.sh "$root/scripts/"
  touch "$root/build/release/build.ninja"
  printf '#!/bin/bash\necho "pallimo $*"\n' >"$root/build/release/bin/pallimo"
  chmod +x "$root/build/release/bin/pallimo"
  fake dpkg-query 'echo installed'
  fake cmake 'echo "ninja: no work to do."'
  fake apt-get 'echo "apt-get $*" >>"$SANDBOX/calls"'
  fake uname 'echo Linux'
  fake id 'echo 0'
}

run_it() { # OPTIONS...: stdout in $out, stderr in $err, status in $status
  out=$(env -u DISPLAY -u WAYLAND_DISPLAY SANDBOX="$sandbox" PATH="$sandbox/bin:$PATH" \
    "$root/run" "$@" 2>"$sandbox/err")
  status=$?
  err=$(cat "$sandbox/err")
}

install_it() { # SNIPPET: runs it with the packages' functions
  out=$(SANDBOX="$sandbox" PATH="$sandbox/bin:/usr/bin:/bin" \
    bash -c ". '$root/scripts/packages.sh'; $1" 2>"$sandbox/err")
  status=$?
  err=$(cat "$sandbox/err")
}

no_display="No display found: running with --headless --install-helper (Ctrl-C ends it)."

set_up
run_it --samples 3
expect "without a display it runs headless" "pallimo --headless --install-helper --samples 3" "$out"
expect "and says so in one line" "$no_display" "$err"

set_up
run_it --install-helper
expect "an option that was given is not given twice" "pallimo --headless --install-helper" "$out"

set_up
run_it --headless --format csv
expect "with --headless the options pass unchanged" "pallimo --headless --format csv" "$out"
expect "and nothing is said" "" "$err"

set_up
fake uname 'echo Darwin'
mkdir -p "$root/build/release/bin/pallimo.app/Contents/MacOS"
printf '#!/bin/bash\necho "bundled $*"\n' >"$root/build/release/bin/pallimo.app/Contents/MacOS/pallimo"
chmod +x "$root/build/release/bin/pallimo.app/Contents/MacOS/pallimo"
run_it --samples 3
expect "on a Mac the app of the bundle runs, with a window" "bundled --samples 3" "$out"
expect "and nothing is said of displays" "" "$err"

set_up
run_it --version
expect "an answer needs no display" "pallimo --version" "$out"

set_up
run_it --diagnose
expect "nor does a report" "pallimo --diagnose" "$out"
expect "and nothing is said of displays" "" "$err"

set_up
out=$(env DISPLAY=:7 SANDBOX="$sandbox" PATH="$sandbox/bin:$PATH" "$root/run" --speed 2)
expect "with a display the options pass unchanged" "pallimo --speed 2" "$out"

set_up
out=$(cd / && env CDPATH=/usr DISPLAY=:7 SANDBOX="$sandbox" PATH="$sandbox/bin:$PATH" "$root/run" x)
expect "it runs from another folder" "pallimo x" "$out"

set_up
ln -s "$root/run" "$sandbox/bin/pallimo-run"
out=$(env DISPLAY=:7 SANDBOX="$sandbox" PATH="$sandbox/bin:$PATH" "$sandbox/bin/pallimo-run" x)
expect "it runs through a symbolic link" "pallimo x" "$out"

set_up
fake cmake 'echo "broken.cpp:1: error"; exit 1'
run_it --headless
expect "a failed build prints nothing on standard output" "" "$out"
expect "its status is 1" "1" "$status"
expect "and its output is shown" "1" "$(grep -c 'broken.cpp:1: error' "$sandbox/err")"

set_up
install_it 'install_debian one two'
expect "what is installed is not installed again" "" "$(cat "$sandbox/calls" 2>/dev/null)"

set_up
fake dpkg-query 'printf "installed\ninstalled\n"'
install_it 'install_debian one'
expect "a package of two architectures is installed" "" "$(cat "$sandbox/calls" 2>/dev/null)"

set_up
fake dpkg-query 'exit 1'
install_it 'install_debian one two'
expect "what is missing is installed in one go" \
  "apt-get update -qq|apt-get install -y -qq --no-install-recommends one two|" \
  "$(tr '\n' '|' <"$sandbox/calls")"
expect "standard output stays the app's" "" "$out"

set_up
fake dpkg-query 'exit 1'
fake apt-get '[ "$1" = update ] || ! case "$*" in *two*) true ;; *) false ;; esac'
install_it 'install_debian one two'
expect "a failed install has a status" "1" "$status"
expect "it names the package" "1" "$(grep -c '^Could not install two\.' "$sandbox/err")"
expect "and the command" "  apt-get install -y --no-install-recommends two" \
  "$(tail -n 1 "$sandbox/err")"

set_up
fake dpkg-query 'exit 1'
fake apt-get '[ "$1" = update ] || sh "$SANDBOX/policy" || echo "refused: $?" >>"$SANDBOX/calls"'
fake systemctl 'true'
install_it 'service_policy=$SANDBOX/policy; install_debian prometheus'
expect "the tests' Prometheus does not start as a service" "refused: 101" \
  "$(grep refused "$sandbox/calls")"
expect "and other services may afterwards" "no" "$([ -e "$sandbox/policy" ] && echo yes || echo no)"

set_up
fake dpkg-query 'exit 1'
fake apt-get '[ "$1" = update ] || { sh "$SANDBOX/policy" || echo "refused: $?" >>"$SANDBOX/calls"; kill -TERM "$PPID"; }'
fake systemctl 'true'
install_it 'service_policy=$SANDBOX/policy; root_prefix=; apt_install prometheus'
expect "an installation that is ended was under way" "refused: 101" "$(cat "$sandbox/calls")"
expect "it ends by its signal" "143" "$status"
expect "and leaves no policy behind" "no" "$([ -e "$sandbox/policy" ] && echo yes || echo no)"

set_up
fake dpkg-query 'exit 1'
fake apt-get '[ "$1" = update ]'
fake systemctl 'true'
install_it 'service_policy=$SANDBOX/policy; install_debian prometheus'
expect "one that fails has its status" "1" "$status"
expect "and leaves none either" "no" "$([ -e "$sandbox/policy" ] && echo yes || echo no)"

set_up
fake dpkg-query 'exit 1'
fake systemctl 'true'
echo 'exit 0' >"$sandbox/policy"
install_it 'service_policy=$SANDBOX/policy; install_debian prometheus'
expect "a machine's own policy stays" "exit 0" "$(cat "$sandbox/policy")"

set_up
fake dpkg-query 'exit 1'
fake id 'echo 1000'
fake sudo 'echo "sudo $*" >>"$SANDBOX/calls"'
install_it 'install_debian one'
expect "a user installs with sudo" "2" "$(grep -c '^sudo ' "$sandbox/calls")"

set_up
fake dpkg-query 'exit 1'
fake id 'echo 1000'
rm -rf "$sandbox/bin2" && mkdir "$sandbox/bin2"
for program in bash cat grep tail tr; do ln -s "$(command -v "$program")" "$sandbox/bin2/$program"; done
out=$(SANDBOX="$sandbox" PATH="$sandbox/bin:$sandbox/bin2" \
  bash -c ". '$root/scripts/packages.sh'; install_debian one" 2>"$sandbox/err")
expect "without sudo it says what to run as root" "  apt-get install -y --no-install-recommends one" \
  "$(tail -n 1 "$sandbox/err")"

counted() { # CTEST-OUTPUT STATUS: the last line of run_counted
  bash -c ". '$root/scripts/count_tests.sh'; run_counted bash -c 'printf \"$1\"; exit $2'" | tail -n 1
}
set_up
expect "tests are counted" "12 passed, 0 failed" \
  "$(counted '100%% tests passed, 0 tests failed out of 12\n' 0)"
expect "failures are counted" "10 passed, 2 failed" \
  "$(counted '83%% tests passed, 2 tests failed out of 12\n' 8)"
expect "skipped tests are counted apart" "11 passed, 0 failed, 1 skipped" \
  "$(counted '1/12 Test #1: a ...***Skipped 0.1 sec\n100%% tests passed, 0 tests failed out of 12\n' 0)"
expect "no tests are no success" "0 passed, 0 failed" "$(counted 'No tests were found\n' 0)"
bash -c ". '$root/scripts/count_tests.sh'; run_counted true" >/dev/null
expect "and have a status" "1" "$?"

echo "$passed expectations held, $failed did not"
[ "$failed" -eq 0 ]
