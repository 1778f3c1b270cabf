// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "scenarios/fault_expectation.h"

#include <cstdio>
#include <map>

#include "scenarios/whole_program.h"

namespace pallimo::scenarios {

namespace {

/// Utilisations of CPU, E and P by the number of processors.
struct Utilizations {
  const char* sinceBoot;
  const char* sinceSample;
};

const std::map<std::size_t, Utilizations> kUtilizations = {
    {0, {"nan, nan, nan", "nan, nan, nan"}},
    {1, {"10.000, 10.000, nan", "25.000, 25.000, nan"}},
    {2, {"15.000, 10.000, 20.000", "50.000, 25.000, 75.000"}},
    {3, {"10.000, 10.000, 20.000", "33.333, 25.000, 75.000"}},
};

constexpr const char* kGlitchValue = "7";

void take(std::optional<std::string>& mine, const std::optional<std::string>& others) {
  if (others) mine = others;
}

void take(FigureEffect& mine, const FigureEffect& others) {
  take(mine.power, others.power);
  take(mine.frequency, others.frequency);
  take(mine.cpuTemperature, others.cpuTemperature);
  take(mine.gpuTemperature, others.gpuTemperature);
  take(mine.gpuUtilization, others.gpuUtilization);
}

void take(OtherEffect& mine, const OtherEffect& others) {
  take(mine.log, others.log);
  take(mine.update, others.update);
  take(mine.endAtRow, others.endAtRow);
}

/// A period that is no number is the usual one, a negative one the shortest.
std::string periodOf(const FaultyWorld& world) {
  const std::string stored = world.storedPeriod.value_or("");
  if (stored == "-5") return "100";
  return stored == "inf" ? "inf" : "500";
}

}  // namespace

FaultyWorld healthyWorld(FaultyMacKind kind) {
  FaultyWorld world;
  if (kind == FaultyMacKind::hid) world.model = "Macmini9,1";
  return world;
}

FaultExpectation::FaultExpectation(FaultyMacKind kind) : kind_(kind), world_(healthyWorld(kind)) {}

bool FaultExpectation::isEffective(const Fault& fault) const {
  return fault.port != (kind_ == FaultyMacKind::smc ? "HidClient" : "SmcDevice");
}

void FaultExpectation::setActive(const std::vector<const Fault*>& active) {
  const std::string periodBefore = periodOf(world_);
  world_ = healthyWorld(kind_);
  figures_ = {};
  other_ = {};
  for (const Fault* fault : active) {
    fault->set(world_);
    if (!isEffective(*fault)) continue;
    take(figures_, fault->figures);
    take(other_, fault->other);
  }
  applyInteractions(active);
  if (periodOf(world_) != periodBefore) clearHistories();
}

void FaultExpectation::applyInteractions(const std::vector<const Fault*>& active) {
  const auto isActive = [&](const std::string& name) {
    for (const Fault* fault : active) {
      if (fault->name == name) return isEffective(*fault);
    }
    return false;
  };
  for (const Interaction& each : interactions()) {
    if (!isActive(each.one) || !isActive(each.another)) continue;
    take(figures_, each.figures);
    take(other_, each.other);
  }
}

void FaultExpectation::begins(const Fault& fault) {
  if (fault.name == fault_name::kHelperDies) {
    clearHistories();
    isServed_ = isPressed_ = isConnected_ = false;
    owed_ = 0;
  }
  if (fault.name == fault_name::kInvalidated) {
    isConnected_ = false;
    owed_ = 0;
    if (!isServed_) loseProbe();
  }
}

/// Nothing of the past is repeated or served.
void FaultExpectation::clearHistories() {
  gpuTemperatureBefore_ = std::nullopt;
  servedPower_ = "none";
}

/// The new helper is asked once; whoever asked it goes on waiting until the limit is over.
void FaultExpectation::loseProbe() { ending_ = kStillNotUsable; }

SeenSecond FaultExpectation::second() {
  ++seconds_;
  SeenSecond expected;
  const std::size_t results = resultsOfThisSecond();
  for (std::size_t result = 0; result < results; ++result) expected.rows.push_back(row());
  if (results > 0) servedPower_ = packagePowerServed();
  expected.log = other_.log.value_or("saved in /home/ada/Desktop");
  expected.update = other_.update.value_or("checks");
  if (results > 0 && other_.endAtRow) {
    ending_ = *other_.endAtRow;
    hasEnded_ = true;
  }
  expected.served = servedPower_;
  return expected;
}

/// A connection stays in use until it fails, without a proxy too: what is sent over it is skipped.
void FaultExpectation::connect() {
  isConnected_ = world_.connects && !world_.nobodyServes;
  isMute_ = isConnected_ && !world_.hasProxies;
}

/// The run looks once a second and presses the button where no helper serves.
void FaultExpectation::pressAndProbe() {
  if (!isPressed_) {
    isPressed_ = true;
    if (!world_.installs) {
      ending_ = kRefusal;
      hasEnded_ = true;
      return;
    }
    connect();
    if (!isConnected_ || isMute_) loseProbe();
  }
  if (ending_ != "running" || world_.helperHangs) return;
  if (!world_.helperSaysItResponds) return loseProbe();
  // The connection of the probe is dropped; the first request opens another.
  isServed_ = true;
  isConnected_ = false;
}

std::size_t FaultExpectation::resultsOfThisSecond() {
  std::size_t overdue = owed_;
  if (!isServed_) pressAndProbe();
  if (!isServed_ || hasEnded_) return 0;
  if (!isConnected_) connect();
  if (isMute_) {
    ending_ = kSilent;
  } else if (isConnected_) {
    ++owed_;
  }
  if (world_.helperHangs) return 0;
  if (!world_.helperIsLate) overdue = owed_;
  owed_ -= overdue;
  if (!world_.document) return 0;
  return world_.helperRepeats ? 2 * overdue : overdue;
}

std::string FaultExpectation::row() {
  return times() + ", " + power() + ", " + figures_.frequency.value_or("1500, 3000, 444") + ", " +
         figures_.cpuTemperature.value_or("40, 48, 60") + ", " + gpuTemperature() + ", " +
         utilization() + ", " + figures_.gpuUtilization.value_or("37.000");
}

std::string FaultExpectation::power() const {
  return figures_.power.value_or("12.000, 8.000, 1.000, 0.100, 3.000");
}

/// What was not measured is 0 in a row, and not served at all.
std::string FaultExpectation::packagePowerServed() const {
  const std::string package = power().substr(0, power().find(','));
  return package == "0.000" ? "none" : package;
}

/// The time of day and the seconds since the first row, which came at the start.
std::string FaultExpectation::times() const {
  constexpr int kDay = 86'400;
  constexpr int kStart = 13 * 3600 + 2 * 60 + 33;
  const int shown = seconds_ + world_.clockError;
  const int second = ((kStart + shown) % kDay + kDay) % kDay;
  char text[64];
  std::snprintf(text, sizeof text, "%02d:%02d:%02d.123, %d.000", second / 3600, second / 60 % 60,
                second % 60, shown);
  return text;
}

std::string FaultExpectation::gpuTemperature() {
  std::string shown = figures_.gpuTemperature.value_or("35");
  if (shown == kGlitchValue && gpuTemperatureBefore_) shown = *gpuTemperatureBefore_;
  gpuTemperatureBefore_ = shown;
  return shown;
}

std::string FaultExpectation::utilization() {
  const std::size_t processors = world_.ticksFail ? 0 : world_.processors;
  const Utilizations& shares = kUtilizations.at(processors);
  const bool isSinceSample = std::exchange(processorsBefore_, processors) == processors;
  if (!isSinceSample) return shares.sinceBoot;
  return world_.ticksStandStill ? "nan, nan, nan" : shares.sinceSample;
}

}  // namespace pallimo::scenarios
