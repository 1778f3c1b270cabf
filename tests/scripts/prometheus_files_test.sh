#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 The Pallimo authors
#
# prometheus_files_test.sh ROOT: Prometheus's own tool on the configuration and the rules that ship.
# Status 77 where the tool is not installed; 1 where PALLIMO_DEMANDS_PROMETHEUS says that it must be.
set -euo pipefail
cd "$1/packaging/prometheus"
command -v promtool >/dev/null || {
  echo "promtool is not installed"
  [ -n "${PALLIMO_DEMANDS_PROMETHEUS:-}" ] && exit 1
  exit 77
}
promtool check config prometheus.yml
promtool check rules --lint=all --lint-fatal pallimo.rules.yml
promtool test rules pallimo.rules.test.yml
