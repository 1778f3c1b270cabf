# shellcheck shell=bash
# shellcheck disable=SC2034
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 The Pallimo authors
#
# What the scripts of this folder share. They run on a Mac alone, with its bash 3.2 and BSD tools.

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
root=$(cd "$here/../.." && pwd)

# Never taken from a bundle: it becomes part of paths that root writes to and removes.
label=com.ostrovane.powermetrics
tools_folder=/Library/PrivilegedHelperTools
jobs_folder=/Library/LaunchDaemons
installed_tool="$tools_folder/$label"
installed_job="$jobs_folder/$label.plist"

say() { printf '%s\n' "$*" >&2; }

fail() {
  say "$*"
  exit 1
}

# in_list KEYPATH PLIST: one value of a property list ("CFBundleName", "Dict:key").
in_list() { /usr/libexec/PlistBuddy -c "Print :$1" "$2"; }

# The app that ./run builds.
default_app="$root/build/release/bin/pallimo.app"

# use_app APP: where everything of the bundle lies, and whom it accepts as its helper.
use_app() {
  app=$1
  [ -d "$app" ] || fail "There is no app at $app; build it with ./run --version."
  info="$app/Contents/Info.plist"
  helper="$app/Contents/Library/LaunchServices/$label"
  requirement=$(in_list "SMPrivilegedExecutables:$label" "$info") ||
    fail "$info does not say whom the app accepts as its helper."
}

# print_section PROGRAM NAME: the bytes of one section that the program carries within itself.
print_section() {
  local place
  place=$(otool -l "$1" | awk -v name="$2" '
    $1 == "sectname" { found = ($2 == name) }
    found && $1 == "size" { size = $2 }
    found && $1 == "offset" && !offset { offset = $2; print offset, size }')
  [ -n "$place" ] || fail "$1 carries no $2."
  dd if="$1" bs=1 skip="${place% *}" count=$((${place#* })) 2>/dev/null
}

# programs: everything of the bundle that is code, whether it may be executed or not.
programs() {
  find "$app/Contents" -type f \( -name '*.dylib' -o -name '*.so' -o -path '*/MacOS/*' \
    -o -path '*/LaunchServices/*' -o -path '*.framework/Versions/*' \) ! -path '*/Resources/*' \
    ! -path '*/Headers/*' ! -path '*/_CodeSignature/*' -print
}

# outside_paths PROGRAM: the folders outside the bundle and the system that its libraries are searched in.
outside_paths() {
  otool -l "$1" 2>/dev/null |
    awk '$1 == "cmd" { rpath = ($2 == "LC_RPATH") } rpath && $1 == "path" && $2 !~ /^@/ { print $2 }' |
    sed -e '/^\/System\//d' -e '/^\/usr\/lib/d' || true
}

# want_whole: a library from outside the bundle or the system would be missing on the next machine,
# and a folder outside might hold anybody's.
want_whole() {
  command -v otool >/dev/null 2>&1 || fail "otool is missing; it comes with Xcode's command line tools."
  local strays paths
  # Not every file of a framework is code; otool says so of the others.
  strays=$(programs | while IFS= read -r program; do otool -L "$program" 2>/dev/null || true; done |
    sed -n 's/^[[:space:]]*\(\/[^ ]*\) (.*/\1/p' | sort -u | sed -e '/^\/System\//d' -e '/^\/usr\/lib\//d')
  [ -z "$strays" ] || fail "The bundle still uses libraries from outside: $strays"
  paths=$(programs | while IFS= read -r program; do outside_paths "$program"; done | sort -u)
  [ -z "$paths" ] || fail "The bundle still searches for libraries outside: $paths"
}

# print_job: the job's property list, the same as the helper carries within itself.
print_job() {
  sed "s/@LABEL@/$label/g" <<'END'
<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0">
<dict>
	<key>Label</key>
	<string>@LABEL@</string>
	<key>MachServices</key>
	<dict>
		<key>@LABEL@</key>
		<true/>
	</dict>
	<key>ProgramArguments</key>
	<array>
		<string>/Library/PrivilegedHelperTools/@LABEL@</string>
	</array>
</dict>
</plist>
END
}

want_root() {
  [ "$(id -u)" -eq 0 ] || fail "This changes the system's folders; run it with sudo."
}

# want_safe FOLDER: that nobody but root can put something into it.
want_safe() {
  [ -n "$(find "$1" -prune -type d -user root ! -perm -g+w ! -perm -o+w -print)" ] ||
    fail "$1 is not a folder that root alone can change; nothing is installed there."
}

# forget_job: has launchd stop the helper and forget it; no error when it knows none. launchd answers
# before it is done, and takes no job of a name that it has not forgotten yet.
forget_job() {
  local tries=0
  launchctl bootout "system/$label" 2>/dev/null || true
  while launchctl print "system/$label" >/dev/null 2>&1; do
    tries=$((tries + 1))
    [ "$tries" -lt 100 ] || return 1
    sleep 0.1
  done
}
