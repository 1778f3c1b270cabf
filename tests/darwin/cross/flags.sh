# shellcheck shell=bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 The Pallimo authors
#
# How a file is compiled and linked for the real target without a Mac. Sourced; wants $root and
# $out. The C library's headers are another system's, so what comes out is for checking and never
# ships.

target=arm64-apple-macos13
# As the build for a Mac has it.
powermetrics=$(sed -n 's/.*PALLIMO_POWERMETRICS="\([^"]*\)".*/\1/p' "$root/cmake/MacPrograms.cmake")

# cross_headers: the headers that need a copy or a link. Apple's availability marks are switched on,
# which Debian's libc++ is configured without: a function that macOS 13 lacks is an error.
cross_headers() {
  rm -rf "$out/include"
  mkdir -p "$out/include/avail" "$out/include/libraries"
  grep -v NO_VENDOR_AVAIL /usr/lib/llvm-16/include/c++/v1/__config_site >"$out/include/avail/__config_site"
  ln -s /usr/include/plist /usr/include/nlohmann "$out/include/libraries/"
}

# cross_clang LANGUAGE ARGUMENT...
cross_clang() {
  local language=$1
  shift
  clang++-16 --target=$target -x "$language" -std=c++20 -O0 -D_GNU_SOURCE -DNDEBUG -nostdinc++ -nostdlibinc \
    -isystem "$out/include/avail" -isystem /usr/lib/llvm-16/include/c++/v1 \
    -isystem "$root/tests/darwin/cross/include" -isystem "$root/tests/darwin/include" \
    -isystem /usr/include/x86_64-linux-musl -isystem "$out/include/libraries" \
    -I"$root/src" -I"$root" -I"$out/generated" \
    -DPALLIMO_VERSION='"0"' -DPALLIMO_POWERMETRICS="\"$powermetrics\"" \
    -DPALLIMO_SUPPORT_ADDRESS='""' -DPALLIMO_STORE_ADDRESS='""' -DPALLIMO_SOCIAL_ADDRESS='""' \
    -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Wold-style-cast -Wthread-safety -Werror \
    "$@"
}

# cross_compile SOURCE...: each becomes $out/objects/<path with underscores>.o.
cross_compile() {
  local source object status=0
  for source in "$@"; do
    object=$out/objects/$(printf '%s' "$source" | tr / _).o
    case "$source" in
      *.mm) cross_clang objective-c++ -fobjc-arc -c "$root/$source" -o "$object" ;;
      *) cross_clang c++ -include-pch "$out/everywhere.pch" -c "$root/$source" -o "$object" ;;
    esac || status=1
  done
  return $status
}

# cross_link PROGRAM ARGUMENT...
cross_link() {
  local program=$1
  shift
  ld64.lld-16 -arch arm64 -platform_version macos 13.0 13.0 -syslibroot "$out/sdk" \
    -o "$program" "$@" -lSystem -lc++
}
