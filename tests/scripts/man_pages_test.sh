#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 The Pallimo authors
#
# man_pages_test.sh ROOT: mandoc finds nothing to object to in the manual pages, and would.
# Status 77 where mandoc is not installed.
set -euo pipefail
pages=$1/packaging/man
command -v mandoc >/dev/null || {
  echo "mandoc is not installed"
  exit 77
}
count=0
for page in "$pages"/*.[0-9]; do
  mandoc -T lint -W warning "$page"
  # The heading names the file: a page is looked up by the one and shown by the other.
  name=$(basename "$page")
  heading=$(sed -n 's/^\.Dt //p' "$page" | tr '[:upper:] ' '[:lower:].')
  [ "$heading" = "$name" ] || {
    echo "$name is headed $heading"
    exit 1
  }
  count=$((count + 1))
done
broken=$(mktemp)
trap 'rm -f "$broken"' EXIT
sed '/^\.Dd/d; s/^\.El$//' "$pages/pallimo.1" >"$broken"
if mandoc -T lint -W warning "$broken" >/dev/null; then
  echo "mandoc objects to nothing in a page without a date and the end of its lists"
  exit 1
fi
echo "$count manual pages"
[ "$count" -eq 3 ]
