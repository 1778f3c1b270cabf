#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 The Pallimo authors
#
# mac_install_test.sh ROOT   runs the two scripts that a Mac's administrator runs as root, in copies
# whose fixed paths lead into a sandbox and whose tools write down how they were called.
set -uo pipefail
root=$1
sandbox=$(mktemp -d)
trap 'rm -rf "$sandbox"' EXIT
label=com.ostrovane.powermetrics
tools=$sandbox/Library/PrivilegedHelperTools
jobs=$sandbox/Library/LaunchDaemons
app=$sandbox/Some.app
helper=$app/Contents/Library/LaunchServices/$label

# The paths are fixed on purpose, and no variable moves them: so the copies are edited.
copies=$sandbox/packaging/macos
mkdir -p "$copies" "$sandbox/bin"
for script in common.sh install-helper remove-helper; do
  sed -e "s|^PATH=|PATH=$sandbox/bin:|" -e "s|=/Library/|=$sandbox/Library/|" \
    -e "s|/usr/libexec/PlistBuddy|PlistBuddy|" -e "s|-user root|-user $(id -u)|" \
    "$root/packaging/macos/$script" >"$copies/$script"
done

tool() { # NAME: its body comes on standard input, behind a line that writes the call down
  {
    printf '#!/bin/bash\nprintf "%%s\\n" "%s $*" >>"%s/calls"\n' "$1" "$sandbox"
    cat
  } >"$sandbox/bin/$1"
  chmod +x "$sandbox/bin/$1"
}
tool id <<<'echo "${FAKE_USER:-0}"'
tool PlistBuddy <<<'echo "the requirement"'
tool codesign <<<"case \"\$*\" in *-R=*) [ ! -e $sandbox/bad_helper ] ;; *) [ ! -e $sandbox/bad_app ] ;; esac"
tool chown </dev/null
tool sleep </dev/null
# A Mac's: "-d" makes a folder; otherwise a copy with that mode, through a link as the real one goes.
tool install <<'END'
umask >"${0%/bin/*}/umask"
mode=$(printf '%s' "$*" | sed 's/.*-m \([0-7]*\).*/\1/')
while [ $# -gt 2 ]; do shift; done
if [ "$mode" = 1755 ]; then mkdir "$2" && chmod 755 "$2"; else cp "$1" "$2" && chmod "$mode" "$2"; fi
END
# launchd knows a job for as many more questions as the file "lingers" says.
tool launchctl <<END
left=\$(cat $sandbox/lingers)
case "\$1" in
  print) [ "\$left" -gt 0 ] && echo \$((left - 1)) >$sandbox/lingers ;;
  bootstrap) [ ! -e $sandbox/refuses ] ;;
esac
END

failed=0
checked=0
check() { # WHAT COMMAND...
  local what=$1
  shift
  checked=$((checked + 1))
  "$@" && return
  printf 'FAILED: %s\n' "$what"
  sed 's/^/  /' "$sandbox/calls" "$sandbox/said" 2>/dev/null
  failed=$((failed + 1))
}
begin() {
  chmod -R u+w "$sandbox/Library" 2>/dev/null
  rm -rf "$sandbox/Library" "$app" "$sandbox/calls" "$sandbox/bad_app" "$sandbox/bad_helper" "$sandbox/refuses"
  mkdir -p "$jobs" "${helper%/*}"
  chmod 755 "$jobs"
  echo code >"$helper"
  echo 3 >"$sandbox/lingers"
  : >"$sandbox/calls"
}
run() { # SCRIPT [ARGUMENT...], with a caller that wishes to choose what root runs and makes
  (umask 000 && PATH="$sandbox/evil:$PATH" CDPATH=/ bash -p "$copies/$1" "${@:2}") >"$sandbox/said" 2>&1
}
refused() { ! run install-helper "$app"; }
nothing() { [ ! -e "$tools/$label" ] && [ ! -e "$jobs/$label.plist" ] && left_nothing; }
left_nothing() { [ ! -e "$tools/$label.new" ] && [ ! -e "$jobs/$label.plist.new" ]; }
called() { grep -q -- "$1" "$sandbox/calls"; }
uncalled() { ! called "$1"; }
line() { grep -n -- "$1" "$sandbox/calls" | head -n 1 | cut -d : -f 1; }
in_order() { # PATTERN...: each was called, one after the other
  local at=0 now
  for pattern in "$@"; do
    now=$(line "$pattern")
    [ -n "$now" ] && [ "$now" -gt "$at" ] || return 1
    at=$now
  done
}
mode_is() { [ "$(ls -ld "$1" | cut -c 1-10)" = "$2" ]; }

# A caller's own tool of a name that the scripts use.
mkdir "$sandbox/evil"
printf '#!/bin/bash\ntouch "%s/taken_over"\n' "$sandbox" >"$sandbox/evil/dirname"
chmod +x "$sandbox/evil/dirname"

begin
check "it is installed" run install-helper "$app"
check "the tool is the app's" cmp -s "$helper" "$tools/$label"
check "the tool has its mode" mode_is "$tools/$label" -r-xr--r--
check "the job has its mode" mode_is "$jobs/$label.plist" -rw-r--r--
check "the caller's umask counts for nothing" grep -qx 0022 "$sandbox/umask"
check "the caller's PATH counts for nothing" [ ! -e "$sandbox/taken_over" ]
check "the folder is root's" called "install -d -o root -g wheel -m 1755 $tools\$"
check "the copy is root's alone until it is checked" called "install -o root -g wheel -m 0500 .*\.new\$"
check "checked, forgotten, waited for, started" in_order "codesign --verify --strict $app\$" \
  "codesign --verify --strict -R=the requirement .*\.new\$" "launchctl bootout system/$label" "launchctl print" \
  "launchctl enable system/$label" "launchctl bootstrap system $jobs/$label.plist"
check "launchd is asked until it knows the job no more" [ "$(grep -c 'launchctl print' "$sandbox/calls")" -eq 4 ]
check "nothing else stays" left_nothing

begin
check "only root may" env FAKE_USER=501 bash -c "! bash '$copies/install-helper' '$app' 2>/dev/null"
check "without root nothing is there" nothing
begin
touch "$sandbox/bad_app"
check "an app whose signature is broken is refused" refused
check "then nothing is there" nothing
begin
touch "$sandbox/bad_helper"
check "a helper that the app would not accept is refused" refused
check "then nothing is there either" nothing
check "and launchd hears nothing" uncalled launchctl
begin
mv "$helper" "$helper.real"
ln -s "$helper.real" "$helper"
check "a link in the helper's place is refused" refused
check "then nothing was copied" uncalled "install -o"
for folder in "$tools" "$jobs"; do
  begin
  mkdir -p "$folder"
  chmod 777 "$folder"
  check "a folder that others can write is refused" refused
  check "then nothing was copied there" uncalled "install -o"
done
begin
mkdir "$sandbox/Library/elsewhere"
ln -s "$sandbox/Library/elsewhere" "$tools"
check "a link in the folder's place is refused" refused
begin
mkdir -p "$tools"
echo old >"$tools/$label"
echo 1000 >"$sandbox/lingers"
check "a job that launchd does not let go ends it" refused
check "then the old helper stays" grep -q old "$tools/$label"
check "and nothing else" left_nothing
begin
touch "$sandbox/refuses"
check "a job that launchd refuses ends it" refused
check "then nothing stays behind" nothing

begin
run install-helper "$app"
rm -rf "$app"
: >"$sandbox/calls"
check "it is removed, without an app" run remove-helper
check "both files are gone" nothing
check "launchd forgets it" in_order "launchctl bootout system/$label" "launchctl print"
check "removing it again is no error" run remove-helper
echo 1000 >"$sandbox/lingers"
check "a job that stays is told of" eval '! run remove-helper'

# The copies keep the rest as it is: what is set before anything else stands before anything else.
for script in install-helper remove-helper; do
  first=$(sed -e '/^#/d' -e '/^$/d' "$root/packaging/macos/$script" | head -n 3 | tr '\n' ';')
  check "$script begins with its own path" \
    [ "$first" = "PATH=/usr/bin:/bin:/usr/sbin:/sbin;export PATH;umask 022;" ]
done

echo "$checked checks, $failed failed"
[ "$failed" -eq 0 ]
