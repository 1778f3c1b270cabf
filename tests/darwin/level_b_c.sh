#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 The Pallimo authors
#
# level_b_c.sh PACKAGING   compiles everything of the Mac that needs no Qt for arm64-apple-macos13
# (level B), links it against lists of the symbols that we may use (level C), and reads back the
# property lists that the helper carries within itself. Then it shows that the link can fail.
# PACKAGING is the folder that CMake has written the lists into. Nothing of it can run, or ships.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
packaging=$(cd "$1" && pwd)
out=$(mktemp -d)
trap 'rm -rf "$out"' EXIT
# shellcheck source=tests/darwin/cross/flags.sh
. "$root/tests/darwin/cross/flags.sh"
cd "$root"

fail() {
  printf 'level B and C: %s\n' "$*"
  exit 1
}

mkdir -p "$out/objects" "$out/generated"
cp "$packaging/include/signing_requirements.h" "$out/generated/"
cross_headers
cross_clang c++-header tests/darwin/cross/include/everywhere.h -o "$out/everywhere.pch"

shopt -s nullglob extglob
app=(src/!(app)/*.cpp src/app/!(main).cpp src/app/{start,models,headless,diagnosis}/*.cpp
  src/helper_link/protocol/*.cpp
  src/adapters/{common,common/macos,posix,libplist,macos}/*.cpp src/adapters/macos/*.mm)
helper=(helper/*.cpp helper/macos/*.cpp helper/macos/*.mm)
export root out target powermetrics
[ "$powermetrics" = /usr/bin/powermetrics ] || fail "the helper would start $powermetrics"
export -f cross_clang cross_compile
# shellcheck disable=SC2016
printf '%s\n' "${app[@]}" "${helper[@]}" tests/darwin/cross/main.cpp |
  xargs -P 2 -n 8 bash -c 'cross_compile "$@"' cross || fail "a file does not compile for $target"
echo "level B: $((${#app[@]} + ${#helper[@]})) files compiled for $target ($SECONDS s)"

objects() { # SOURCE...: into the array of that name
  objects=()
  local source
  for source in "$@"; do objects+=("$out/objects/${source//\//_}.o"); done
}

# The lists, and one more for the C++ library, whose own functions are what the headers want.
cp -R tests/darwin/cross/sdk "$out/sdk"
symbols() { llvm-nm-16 -j "$@" | grep -v ':$' | sort -u; }
symbols -u "$out"/objects/*.o >"$out/wanted"
symbols --defined-only "$out"/objects/*.o >"$out/had"
{
  printf -- "--- !tapi-tbd\ntbd-version: 4\ntargets: [ arm64-macos ]\ninstall-name: '/usr/lib/libc++.1.dylib'\n"
  printf 'exports:\n  - targets: [ arm64-macos ]\n    symbols: [ ___gxx_personality_v0'
  comm -23 "$out/wanted" "$out/had" | grep '^__Z\|^___cxa' | sed "s/^\(.*\)\$/, '\1'/" | tr -d '\n'
  printf ' ]\n...\n'
} >"$out/sdk/usr/lib/libc++.tbd"

frameworks() { # NAME...: into the array of that name
  frameworks=()
  local name
  for name in "$@"; do frameworks+=(-framework "$name"); done
}

# The app's: every object, used or not, so that nothing is called that stands in no list.
objects "${app[@]}" tests/darwin/cross/main.cpp
frameworks CoreFoundation Foundation AppKit IOKit Security ServiceManagement UserNotifications Sparkle
cross_link "$out/core" "${objects[@]}" "${frameworks[@]}" -lobjc -lplist-2.0 ||
  fail "the core does not link"

# The helper's: what it may use is less.
objects "${helper[@]}" src/base/*.cpp src/adapters/common/*.cpp src/adapters/common/macos/*.cpp
frameworks CoreFoundation Foundation Security
# Its sections are those that the build for a Mac asks for: section 0 begins at 0, section 1 at 4.
sections=()
while IFS=, read -r segment section file; do
  sections+=(-sectcreate "$segment" "$section" "$packaging/${file##*/}")
done < <(sed -n 's/.*"LINKER:-sectcreate,\([^"]*\)".*/\1/p' cmake/MacPrograms.cmake)
[ ${#sections[@]} -eq 8 ] || fail "cmake/MacPrograms.cmake asks for other sections than two"
link_helper() { # PROGRAM ARGUMENT...
  local program=$1
  shift
  cross_link "$program" "${objects[@]}" "${frameworks[@]}" -lobjc "$@"
}
link_helper "$out/helper" "${sections[@]}" || fail "the helper does not link"

# carries PROGRAM: whether it holds both lists, byte by byte.
carries() {
  local name
  for name in info:HelperInfo launchd:HelperJob; do
    llvm-objcopy-16 --dump-section "__TEXT,__${name%:*}_plist=$out/section" "$1" /dev/null 2>/dev/null &&
      cmp -s "$out/section" "$packaging/${name#*:}.plist" || return 1
    rm -f "$out/section"
  done
}
carries "$out/helper" || fail "the helper does not carry its property lists as they were written"
llvm-otool-16 -L "$out/helper" | sed 1d | sed 's/^[[:space:]]*\([^ ]*\).*/\1/' >"$out/loads"
if grep -v '^/usr/lib/\|^/System/Library/Frameworks/' "$out/loads"; then
  fail "the helper loads libraries that are not the system's"
fi

# The checks can fail. A symbol that stands in no list; a class; a section left out.
refuses() { # WHAT LIST NAME: the name is taken off the list
  local list="$out/sdk/$2"
  cp "$list" "$out/list"
  sed "s/\b$3\b/_taken_away/" "$out/list" >"$list"
  if link_helper "$out/broken" "${sections[@]}" >"$out/said" 2>&1; then fail "a missing $1 was not noticed"; fi
  grep -q "$3" "$out/said" || fail "a missing $1 was not named: $(cat "$out/said")"
  cp "$out/list" "$list"
}
refuses function usr/lib/libSystem.tbd _kevent
refuses class System/Library/Frameworks/Foundation.framework/Foundation.tbd NSXPCListener
link_helper "$out/broken" "${sections[@]:0:4}"
if carries "$out/broken"; then fail "a missing job list was not noticed"; fi
link_helper "$out/broken" "${sections[@]:4:4}"
if carries "$out/broken"; then fail "a missing list of the helper was not noticed"; fi
link_helper "$out/broken" "${sections[@]:0:4}" "${sections[@]:4:3}" "$packaging/HelperInfo.plist"
if carries "$out/broken"; then fail "a wrong job list was not noticed"; fi

# packaging/macos/sign reads the lists off with a Mac's tools; what they say has one form.
otool() { llvm-otool-16 "$@"; }
# shellcheck source=packaging/macos/common.sh
(. packaging/macos/common.sh && print_section "$out/helper" __info_plist) | cmp -s - "$packaging/HelperInfo.plist" ||
  fail "packaging/macos/common.sh does not find the helper's list"

echo "level C: core and helper linked, both lists read back, 5 mistakes caught ($SECONDS s)"
