// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <CoreFoundation/CoreFoundation.h>
#include <mach/mach.h>

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "darwin/fakes/fake_names.h"
#include "darwin/fakes/fake_objects.h"
#include "ports/accelerator_registry.h"
#include "ports/hid_sensors.h"
#include "ports/processor_ticks.h"
#include "ports/smc_device.h"
#include "ports/system_controls.h"

namespace pallimo::darwin {

/// The Mac behind the C functions of this folder: they check what they are given, count references
/// and answer from here. One at a time, one thread.
///
/// What the program does wrong is a complaint; what it does not give back is held. A test looks at
/// both at its end. Any call that can fail on a Mac can be made to fail.
class FakeMac {
 public:
  FakeMac();
  ~FakeMac();
  FakeMac(const FakeMac&) = delete;
  FakeMac& operator=(const FakeMac&) = delete;

  static FakeMac& current();

  // The machine; what is null is not there.
  ports::SmcDevice* smcDevice = nullptr;
  ports::HidSensors* hidSensors = nullptr;
  ports::AcceleratorRegistry* accelerators = nullptr;
  ports::ProcessorTicks* processorTicks = nullptr;
  const ports::SystemControls* systemControls = nullptr;
  /// Gives every property of a HID service in the machine's place, with a reference.
  std::function<CFTypeRef()> hidProperty;
  /// Gives an entry's properties in the machine's place, with a reference; may give none.
  std::function<CFMutableDictionaryRef()> registryProperties;

  // The system's services.
  std::map<std::string, base::PropertyList> infoDictionaries;  ///< by path
  OSStatus authorizationStatus = 0;
  bool givesAuthorization = true;
  OSStatus rightStatus = 0;
  bool blesses = true;
  std::vector<std::string> journal;  ///< what the services were asked for

  /// Lets the n-th fallible call fail, counted from one; 0: none.
  void failCall(std::size_t number) { failing_ = number; }
  /// The fallible calls so far, by function.
  const std::vector<std::string>& fallibleCalls() const { return fallible_; }
  /// Counts one; true when it is to fail. For the functions.
  bool fails(const char* function);

  void complain(std::string line) { complaints_.push_back(std::move(line)); }
  /// Complains unless it is so.
  void expect(bool isSo, const char* complaint) {
    if (!isSo) complain(complaint);
  }
  const std::vector<std::string>& complaints() const { return complaints_; }
  /// Objects, names and memory that the program has not given back.
  std::vector<std::string> held() const;

 private:
  std::vector<std::string> complaints_;
  std::vector<std::string> fallible_;
  std::size_t failing_ = 0;

 public:
  FakeObjects objects{[this](std::string line) { complain(std::move(line)); }};
  FakeNames names{[this](std::string line) { complain(std::move(line)); }};
  /// What the kernel mapped into the task, by address: the words.
  std::map<const integer_t*, std::vector<integer_t>> mapped;
};

inline FakeMac& mac() { return FakeMac::current(); }

}  // namespace pallimo::darwin
