// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <utility>

#include "adapters/macos/c_adapters.h"
#include "adapters/macos/hid_event_system.h"
#include "adapters/macos/system_values.h"

namespace pallimo::adapters::macos {
namespace {

class HidClient final : public ports::HidClient {
 public:
  explicit HidClient(CFRef<IOHIDEventSystemClientRef> client) : client_(std::move(client)) {}

  void setMatching(std::span<const ports::HidMatch> matching) override {
    const CFRef dictionary(CFDictionaryCreateMutable(
        kCFAllocatorDefault, 0, &kCFTypeDictionaryKeyCallBacks, &kCFTypeDictionaryValueCallBacks));
    for (const auto& [property, value] : matching) {
      const auto key = cfText(property);
      const CFRef number(CFNumberCreate(kCFAllocatorDefault, kCFNumberSInt32Type, &value));
      if (!dictionary || !key || !number) {
        client_ = {};  // to match less would find keyboards too
        return;
      }
      CFDictionarySetValue(dictionary.get(), key.get(), number.get());
    }
    IOHIDEventSystemClientSetMatching(client_.get(), dictionary.get());
  }

  std::optional<std::size_t> copyServices() override {
    if (client_) services_ = CFRef(IOHIDEventSystemClientCopyServices(client_.get()));
    if (!services_) return std::nullopt;
    return static_cast<std::size_t>(CFArrayGetCount(services_.get()));
  }

  std::optional<std::int64_t> integerProperty(std::size_t service,
                                              std::string_view name) const override {
    const auto key = cfText(name);
    if (!key) return std::nullopt;
    const CFRef property(IOHIDServiceClientCopyProperty(serviceAt(service), key.get()));
    if (!property || CFGetTypeID(property.get()) != CFNumberGetTypeID()) return std::nullopt;
    std::int64_t value = 0;
    const auto number = static_cast<CFNumberRef>(property.get());
    if (!CFNumberGetValue(number, kCFNumberSInt64Type, &value)) return std::nullopt;
    return value;
  }

  std::optional<double> eventFloat(std::size_t service, std::int32_t type,
                                   std::int32_t field) const override {
    const CFRef event(IOHIDServiceClientCopyEvent(serviceAt(service),
                                                  static_cast<std::uint32_t>(type), nullptr, 0));
    if (!event) return std::nullopt;
    return IOHIDEventGetFloatValue(event.get(), static_cast<std::uint32_t>(field));
  }

 private:
  /// Borrowed from the list.
  IOHIDServiceClientRef serviceAt(std::size_t place) const {
    const void* service = CFArrayGetValueAtIndex(services_.get(), static_cast<CFIndex>(place));
    return static_cast<IOHIDServiceClientRef>(const_cast<void*>(service));
  }

  CFRef<IOHIDEventSystemClientRef> client_;
  CFRef<CFArrayRef> services_;
};

class HidSensors final : public ports::HidSensors {
 public:
  std::unique_ptr<ports::HidClient> createClient() override {
    const bool isWhole =
        IOHIDEventSystemClientCreate != nullptr && IOHIDEventSystemClientSetMatching != nullptr &&
        IOHIDServiceClientCopyEvent != nullptr && IOHIDEventGetFloatValue != nullptr;
    if (!isWhole) return nullptr;
    CFRef client(IOHIDEventSystemClientCreate(kCFAllocatorDefault));
    if (!client) return nullptr;
    return std::make_unique<HidClient>(std::move(client));
  }
};

}  // namespace
std::unique_ptr<ports::HidSensors> makeHidSensors() { return std::make_unique<HidSensors>(); }
}  // namespace pallimo::adapters::macos
