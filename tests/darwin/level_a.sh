#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 The Pallimo authors
#
# level_a.sh   type-checks the Mac's Objective-C++ against declarations of our own, then shows that
# the check can fail: a mistake of each kind, made in a copy, must be an error that names it.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir -p "$work/generated"
sed 's/@[A-Z_]*@/identifier "a"/' "$root/packaging/macos/signing_requirements.h.in" >"$work/generated/signing_requirements.h"

check() { # FILE [FLAG...]
  clang++-16 -x objective-c++ -std=c++20 -fobjc-arc -fblocks -fobjc-runtime=macosx-13.0 -fsyntax-only \
    -I"$root/tests/darwin/include" -I"$root/src" -I"$root" -I"$work/generated" -Wall -Wextra -Wpedantic \
    -Wshadow -Wnon-virtual-dtor -Wold-style-cast -Wthread-safety -Wundeclared-selector -Werror "$@"
}

failures=0
files=0
for file in "$root"/src/adapters/macos/*.mm "$root"/helper/macos/*.mm; do
  files=$((files + 1))
  check "$file" || failures=$((failures + 1))
done

# The mistakes of one file are made in one copy: most of the time goes into the headers.
mistakes=0
copy=$work/mistakes.mm
begin() { # FILE
  file=$1
  cp "$root/$file" "$copy"
  : >"$work/expected"
}
mistake() { # RIGHT WRONG ERROR: a sed expression's two sides, and what the compiler must say
  mistakes=$((mistakes + 1))
  cp "$copy" "$work/before.mm"
  sed "s/$1/$2/" "$work/before.mm" >"$copy"
  cmp -s "$copy" "$work/before.mm" && complain "\"$1\" stands no more in $file"
  printf '%s\n' "$3" >>"$work/expected"
}
complain() {
  printf 'level A: %s\n' "$1"
  failures=$((failures + 1))
}
end() {
  local expected
  check "$copy" -ferror-limit=0 >"$work/said" 2>&1 && complain "nothing was said of the mistakes in $file"
  while IFS= read -r expected; do
    grep -q "$expected" "$work/said" || complain "in $file nothing was said like: $expected"
  done <"$work/expected"
}

# A selector that nobody has; a method that is misspelled where it is defined, so that nobody would
# ever call it; another prototype than the declared one.
begin src/adapters/macos/xpc_helper_connector.mm
mistake '\[connection_ resume\]' '[connection_ resumeNow]' "declares the selector 'resumeNow'"
mistake 'setCodeSigningRequirement:requirement_' 'setCodeSigningRequirement:1' "parameter of type 'NSString"
mistake '(void)powermetricsResult:' '(void)powerMetricsResult:' "method 'powermetricsResult:' in protocol"
end
begin src/adapters/common/macos/xpc_helper_proxy.h
mistake 'unInstallHelper\];' 'uninstallHelper];' "'uninstallHelper' not found"
mistake '\^(BOOL isResponding)' '^(NSString* isResponding)' "of type 'void (^.*)(NSString"
end
begin src/adapters/macos/user_notification_centre.mm
mistake 'willPresentNotification:(' 'willShowNotification:(' "willPresentNotification:withCompletionHandler:' in protocol"
mistake 'addNotificationRequest:request' 'addNotificationRequest:content' "cannot initialize a parameter of type 'UNNotificationRequest"
end
begin src/adapters/macos/window_rules.mm
mistake '@selector(applicationWillUpdate:)' '@selector(applicationWilUpdate:)' "undeclared selector 'applicationWilUpdate:'"
end
begin src/adapters/macos/sparkle_software_updater.mm
mistake 'startUpdater:&error' 'startUpdater:error' "from lvalue of type 'NSError\|cannot initialize a parameter\|passing address"
end
begin helper/macos/xpc_listener.mm
mistake 'shouldAcceptNewConnection:' 'shouldAcceptConnection:' "shouldAcceptNewConnection:' in protocol"
mistake 'includeGPU:(BOOL)includeGPU' 'includeGPU:(NSData*)includeGPU' "conflicting parameter types in implementation of 'requestPowermetrics"
mistake '(void (^)(NSString\*))completion' '(void (^)(BOOL))completion' "conflicting parameter types in implementation of 'getVersion"
end

if [ "$failures" -gt 0 ]; then
  echo "level A: $failures failed"
  exit 1
fi
echo "level A: $files files, $mistakes mistakes caught"
