// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "scenarios/fault.h"

namespace pallimo::scenarios {

/// Where a Mac's temperatures come from.
enum class FaultyMacKind { smc, hid };

/// The world of a healthy Mac of that kind.
FaultyWorld healthyWorld(FaultyMacKind kind);

/// What the rules say that a user sees, second by second after a healthy first sample, while faults
/// come and go. Knows the list
/// of faults, the interactions, and what of the past still counts: which results are owed, how many
/// processors the sample before had, which GPU temperature it gave, and whether a helper serves.
class FaultExpectation {
 public:
  explicit FaultExpectation(FaultyMacKind kind);

  /// From now on these last, in the order of the list.
  void setActive(const std::vector<const Fault*>& active);
  void begins(const Fault& fault);

  SeenSecond second();
  /// "running", or the status and line of the run's end, once that can't be avoided any more.
  const std::string& ending() const { return ending_; }
  /// Whether nothing but the end is known from now on.
  bool hasEnded() const { return hasEnded_; }

  const FaultyWorld& world() const { return world_; }

 private:
  bool isEffective(const Fault& fault) const;
  void applyInteractions(const std::vector<const Fault*>& active);
  void clearHistories();
  void connect();
  void loseProbe();
  void pressAndProbe();
  std::size_t resultsOfThisSecond();
  std::string row();
  std::string times() const;
  std::string power() const;
  std::string packagePowerServed() const;
  std::string gpuTemperature();
  std::string utilization();

  const FaultyMacKind kind_;
  FaultyWorld world_;
  FigureEffect figures_;
  OtherEffect other_;

  int seconds_ = 0;
  bool isServed_ = true;     ///< a helper is authorised
  bool isPressed_ = true;    ///< the button, since the helper was lost
  bool isConnected_ = true;  ///< a connection stands
  bool isMute_ = false;      ///< it has no proxy, and never will
  std::size_t owed_ = 0;
  std::size_t processorsBefore_ = 2;
  std::optional<std::string> gpuTemperatureBefore_ = "35";
  std::string servedPower_ = "12.000";
  std::string ending_ = "running";
  bool hasEnded_ = false;
};

}  // namespace pallimo::scenarios
