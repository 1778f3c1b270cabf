// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/common/macos/ns_text.h"
#include "adapters/macos/objc_adapters.h"

namespace pallimo::adapters::macos {
namespace {

class ProcessInformation final : public ports::ProcessInformation {
 public:
  std::string operatingSystemVersionString() const override {
    @autoreleasepool {
      return common::stdString(NSProcessInfo.processInfo.operatingSystemVersionString);
    }
  }
};

}  // namespace
std::unique_ptr<ports::ProcessInformation> makeProcessInformation() {
  return std::make_unique<ProcessInformation>();
}
}  // namespace pallimo::adapters::macos
