# shellcheck shell=bash
# shellcheck disable=SC2034
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 The Pallimo authors
#
# What the scripts of this folder share. They run on a Mac alone, with its bash 3.2 and BSD tools.

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
root=$(cd "$here/../.." && pwd)

say() { printf '%s\n' "$*" >&2; }

fail() {
  say "$*"
  exit 1
}

# in_list KEYPATH PLIST: one value of a property list ("CFBundleName", "Dict:key").
in_list() { /usr/libexec/PlistBuddy -c "Print :$1" "$2"; }

# The app that ./run builds.
default_app="$root/build/release/bin/pallimo.app"

# use_app APP: where everything of the bundle lies, and the names that it was built with.
use_app() {
  app=$1
  [ -d "$app" ] || fail "There is no app at $app; build it with ./run --version."
  info="$app/Contents/Info.plist"
  label=$(/usr/libexec/PlistBuddy -c "Print :SMPrivilegedExecutables" "$info" |
    sed -n 's/^ *\([^ ]*\) = .*/\1/p' | head -n 1)
  # It becomes part of paths that root writes to.
  case "$label" in
    "" | .* | *[!a-z0-9.-]*) fail "$info names no helper, or one of a strange name." ;;
  esac
  helper="$app/Contents/Library/LaunchServices/$label"
  requirement=$(in_list "SMPrivilegedExecutables:$label" "$info")
  installed_tool="/Library/PrivilegedHelperTools/$label"
  installed_job="/Library/LaunchDaemons/$label.plist"
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

# forget_job: has launchd stop the helper and forget it; no error when it knows none.
forget_job() {
  launchctl bootout "system/$label" 2>/dev/null || true
}
