// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <functional>
#include <memory>

#include "adapters/simulated/faults/faults.h"
#include "ports/helper_listener.h"

namespace pallimo::adapters::simulated {

/// Another's listener whose clients meet a helper with the planned faults: one that never answers,
/// answers NO, claims another version, or dies. Everything else passes through as it is. The
/// helper's one thread.
class FaultyHelperListener final : public ports::HelperListener {
 public:
  /// `die` is called in the place of the fatal request, which nobody gets any more; it is meant not
  /// to return.
  FaultyHelperListener(std::unique_ptr<ports::HelperListener> inner, Faults faults,
                       std::function<void()> die);
  ~FaultyHelperListener() override;
  FaultyHelperListener(const FaultyHelperListener&) = delete;
  FaultyHelperListener& operator=(const FaultyHelperListener&) = delete;

  /// The delegate must stay until the listener is destroyed.
  bool start(Delegate& delegate) override;
  void stop() override;

 private:
  class FaultyDelegate;

  const std::unique_ptr<FaultyDelegate> delegate_;  // outlives the inner listener
  const std::unique_ptr<ports::HelperListener> inner_;
};

}  // namespace pallimo::adapters::simulated
