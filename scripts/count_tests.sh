# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 The Pallimo authors
#
# run_counted COMMAND...: runs a ctest command and prints a last line of counts, which ctest does
# not do when a test has failed, after the names of those that passed only when they were repeated.
# The status is the command's.

run_counted() {
  local log status=0 total failed skipped
  log=$(mktemp)
  "$@" 2>&1 | tee "$log" || status=$?
  total=$(sed -n 's/.*tests failed out of \([0-9][0-9]*\).*/\1/p' "$log" | tail -n 1)
  failed=$(sed -n 's/.*tests passed, \([0-9][0-9]*\) tests failed.*/\1/p' "$log" | tail -n 1)
  skipped=$(grep -c '\*\*\*Skipped' "$log" || true)
  if [ "$status" -eq 0 ]; then
    sed -n 's/^.* Test *#[0-9]*: \([^ ]*\) .*\*\*\*[FTE].*/Needed a second run: \1/p' "$log"
  fi
  rm -f "$log"
  if [ -z "$total" ]; then
    echo "0 passed, 0 failed"
    return "$((status == 0 ? 1 : status))"
  fi
  if [ "$skipped" -gt 0 ]; then
    echo "$((total - failed - skipped)) passed, $failed failed, $skipped skipped"
  else
    echo "$((total - failed)) passed, $failed failed"
  fi
  return "$status"
}
