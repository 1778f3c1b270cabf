# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 The Pallimo authors
#
# The table of scripts/soak, and what must be flat. A line of input is a reading:
#   name|log (off, on, often)|part of the run, or "after" its log was written|samples|figures
# and the figures are, of the app and then of its helper: anonymous and resident KB, descriptors,
# threads, children. Status 1 when something grew that must not.
BEGIN {
  FS = "|"
  # Bytes a sample. With what else may come, in KB, a day without a log stays below 1 MB.
  history = 8.2
  row = 145
  slack = 300
  # A helper's allocator keeps what documents took that once waited for a busy app.
  helper_slack = 8 * 1024
  split("anonymous resident descriptors threads children", figure, " ")
}

function complain(what) {
  print "FAILED: " what > "/dev/stderr"
  failed = 1
}

# Of each process: the first reading, the last one, the one in the middle.
{
  split($5, value, " ")
  for (helper = 0; helper <= 1; ++helper) {
    process = $1 (helper ? ": its helper" : "")
    if (!(process in log_of)) {
      order[++processes] = process
      log_of[process] = helper ? "off" : $2
      is_helper[process] = helper
    }
    # The thread that has written a log stays for a while, and nothing else is asked of it then.
    if ($3 == "after") {
      after[process] = value[5 * helper + 1]
      continue
    }
    count = ++readings[process]
    samples[process, count] = $4
    for (i = 1; i <= 5; ++i) take(process, figure[i], count, value[5 * helper + i])
  }
}

function take(process, name, count, now) {
  at[process, name, count] = now
  if (!((process, name) in least) || now < least[process, name]) least[process, name] = now
  if (!((process, name) in most) || now > most[process, name]) most[process, name] = now
}

# What is the same throughout is one number.
function range(process, name) {
  if (least[process, name] == most[process, name]) return most[process, name]
  return least[process, name] " to " most[process, name]
}

function judge(process, growth, taken, limit, i) {
  for (i = 3; i <= 5; ++i) {
    if (least[process, figure[i]] != most[process, figure[i]])
      complain(process ": " range(process, figure[i]) " " figure[i])
  }
  limit = slack + (history + (log_of[process] == "on" ? row : 0)) * taken / 1024
  if (is_helper[process]) limit = helper_slack
  if (growth > limit) complain(process ": grew by " growth " KB, more than " limit)
}

END {
  print "| | samples | anonymous, KB: start | middle | end | growth | bytes a sample | log written |" \
    " resident, KB: start | end | descriptors | threads | children |"
  print "|---|---|---|---|---|---|---|---|---|---|---|---|---|"
  for (p = 1; p <= processes; ++p) {
    process = order[p]
    last = readings[process]
    taken = samples[process, last] - samples[process, 1]
    start = at[process, "anonymous", 1]
    end = at[process, "anonymous", last]
    printf "| %s | %d | %d | %d | %d | %d | %.1f | %s | %d | %d | %s | %s | %s |\n", process,
      samples[process, last], start, at[process, "anonymous", int((last + 1) / 2)], end,
      end - start, 1024 * (end - start) / taken, log_of[process] == "on" ? after[process] : "",
      at[process, "resident", 1], at[process, "resident", last], range(process, "descriptors"),
      range(process, "threads"), range(process, "children")
    judge(process, end - start, taken)
  }
  print "\nWhat may grow: the history of the neural engine's power, the one without a limit, by 8" \
    " bytes a sample;\nwhile a log is on its rows, by 144 bytes each, until it is written."
  exit failed
}
