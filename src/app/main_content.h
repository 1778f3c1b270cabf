// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include "helper_link/xpc_manager.h"

namespace pallimo::app {

/// What the main content shows at its top level; --headless acts on the same answer.
enum class MainContent {
  refusal,  ///< the processor is not Apple silicon
  live,     ///< figures and graphs
  update,   ///< the helper is out of date: a button updates it
  install,  ///< there is no helper that answers: a button installs it
};

/// The first of the conditions that holds, in the order of the enumeration. Pure.
constexpr MainContent mainContent(helper_link::Processor processor, bool isAuthorized,
                                  bool isUpdateNeeded) {
  if (processor != helper_link::Processor::appleSilicon) return MainContent::refusal;
  if (isAuthorized) return MainContent::live;
  return isUpdateNeeded ? MainContent::update : MainContent::install;
}

}  // namespace pallimo::app
