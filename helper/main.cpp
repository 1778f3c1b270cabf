// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "helper/make_helper_platform.h"
#include "helper/run_helper.h"

int main() {
  const auto platform =
      pallimo::helper::makeHelperPlatform({PALLIMO_VERSION, PALLIMO_POWERMETRICS});
  return platform ? pallimo::helper::runHelper(*platform) : 1;
}
