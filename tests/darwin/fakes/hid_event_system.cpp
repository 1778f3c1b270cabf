// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

// The fakes of the HID event system. The adapters' own declarations of what no public header has
// are included, so that one of another shape than these functions does not compile.

#include <CoreFoundation/CoreFoundation.h>
#include <IOKit/IOKitLib.h>
#include <IOKit/hidsystem/IOHIDEventSystemClient.h>
#include <IOKit/hidsystem/IOHIDServiceClient.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "adapters/macos/hid_event_system.h"
#include "darwin/fakes/fake_mac.h"

using pallimo::darwin::FakeArray;
using pallimo::darwin::FakeDictionary;
using pallimo::darwin::FakeObject;
using pallimo::darwin::FakeThing;
using pallimo::darwin::mac;
using pallimo::ports::HidClient;
using pallimo::ports::HidMatch;

namespace {

struct Service {
  std::shared_ptr<HidClient> client;
  std::size_t place = 0;
};
struct Event {
  Service service;
  std::uint32_t type = 0;
  double value = 0;
};

template <typename Reference>
Reference as(const FakeObject* object) {
  const void* const pointer = object;
  return static_cast<Reference>(const_cast<void*>(pointer));
}

/// What the object stands for; nullptr, with a complaint, when it is something else.
template <typename Content>
Content* contentOf(const void* object, const std::string& description, const char* function) {
  const auto& thing = mac().objects.read<FakeThing>(object, function);
  if (thing.description == description) return static_cast<Content*>(thing.content.get());
  mac().complain(std::string(function) + " of what is no " + description);
  return nullptr;
}

}  // namespace

extern "C" {

IOHIDEventSystemClientRef IOHIDEventSystemClientCreate(CFAllocatorRef allocator) {
  mac().expect(allocator == nullptr, "a HID client of another allocator");
  if (mac().fails("IOHIDEventSystemClientCreate")) return nullptr;
  return as<IOHIDEventSystemClientRef>(mac().objects.make(
      FakeThing{"HID client", std::shared_ptr<HidClient>(mac().hidSensors->createClient())}));
}

void IOHIDEventSystemClientSetMatching(IOHIDEventSystemClientRef client, CFDictionaryRef matching) {
  auto* const found =
      contentOf<HidClient>(client, "HID client", "IOHIDEventSystemClientSetMatching");
  mac().expect(matching != nullptr, "a HID client that matches everything");
  if (found == nullptr || matching == nullptr) return;
  std::vector<HidMatch> properties;
  for (const auto& [key, value] :
       mac().objects.read<FakeDictionary>(matching, "IOHIDEventSystemClientSetMatching")) {
    mac().expect(value->numberType == kCFNumberSInt32Type, "a match that has not 32 signed bits");
    properties.push_back(
        {mac().objects.read<std::string>(key, "a key to match"),
         static_cast<std::int32_t>(mac().objects.read<std::int64_t>(value, "a value to match"))});
  }
  found->setMatching(properties);
}

CFArrayRef IOHIDEventSystemClientCopyServices(IOHIDEventSystemClientRef client) {
  constexpr const char* kName = "IOHIDEventSystemClientCopyServices";
  auto* const found = contentOf<HidClient>(client, "HID client", kName);
  if (found == nullptr || mac().fails(kName)) return nullptr;
  const auto content = mac().objects.read<FakeThing>(client, kName).content;
  const auto count = found->copyServices();
  if (!count) return nullptr;
  FakeArray services;
  for (std::size_t place = 0; place < *count; ++place) {
    services.push_back(mac().objects.make(FakeThing{
        "HID service",
        std::make_shared<Service>(Service{std::static_pointer_cast<HidClient>(content), place})}));
  }
  return as<CFArrayRef>(mac().objects.make(std::move(services)));
}

CFTypeRef IOHIDServiceClientCopyProperty(IOHIDServiceClientRef service, CFStringRef key) {
  constexpr const char* kName = "IOHIDServiceClientCopyProperty";
  const auto* found = contentOf<Service>(service, "HID service", kName);
  const std::string name = mac().objects.read<std::string>(key, kName);
  if (found == nullptr || mac().fails(kName)) return nullptr;
  if (mac().hidProperty) return mac().hidProperty();
  const auto value = found->client->integerProperty(found->place, name);
  return value ? mac().objects.make(*value) : nullptr;
}

IOHIDEventRef IOHIDServiceClientCopyEvent(IOHIDServiceClientRef service, uint32_t type,
                                          IOHIDEventRef matching, IOOptionBits options) {
  constexpr const char* kName = "IOHIDServiceClientCopyEvent";
  mac().expect(matching == nullptr && options == 0, "an event that is to match, or with options");
  const auto* found = contentOf<Service>(service, "HID service", kName);
  if (found == nullptr || mac().fails(kName)) return nullptr;
  const auto value = found->client->eventFloat(found->place, static_cast<std::int32_t>(type),
                                               static_cast<std::int32_t>(type << 16));
  if (!value) return nullptr;
  return as<IOHIDEventRef>(mac().objects.make(
      FakeThing{"HID event", std::make_shared<Event>(Event{*found, type, *value})}));
}

double IOHIDEventGetFloatValue(IOHIDEventRef event, uint32_t field) {
  const auto* found = contentOf<Event>(event, "HID event", "IOHIDEventGetFloatValue");
  if (found == nullptr) return 0;
  mac().expect(field == found->type << 16, "a field that is not the first of the event's type");
  return found->value;
}

}  // extern "C"
