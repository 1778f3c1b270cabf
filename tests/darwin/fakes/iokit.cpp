// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

// The fakes of IOKit's functions but for the HID event system's.

#include <IOKit/IOKitLib.h>

#include <memory>
#include <optional>
#include <string>

#include "base/property_list.h"
#include "darwin/fakes/fake_mac.h"

using pallimo::darwin::FakeDictionary;
using pallimo::darwin::FakeObject;
using pallimo::darwin::mac;
using pallimo::ports::SMCRequestRecord;

namespace {

constexpr auto kNotOpen = static_cast<kern_return_t>(0xE00002CD);
constexpr auto kBadArgument = static_cast<kern_return_t>(0xE00002C2);
constexpr auto kNotPermitted = static_cast<kern_return_t>(0xE00002E2);
constexpr auto kError = static_cast<kern_return_t>(0xE00002BC);
constexpr kern_return_t kInvalidDestination = 0x10000003;

constexpr const char* kSmcClass = "AppleSMC";

CFMutableDictionaryRef asDictionary(const FakeObject* object) {
  const void* const pointer = object;
  return static_cast<CFMutableDictionaryRef>(const_cast<void*>(pointer));
}

/// The class that a matching dictionary names.
std::string classIn(CFDictionaryRef matching) {
  const auto& entries =
      mac().objects.read<FakeDictionary>(matching, "IOServiceGetMatchingServices");
  if (entries.size() != 1) return "";
  return mac().objects.read<std::string>(entries.front().second, "a matching dictionary");
}

/// The iterator over a class's services, 0 when there are none; nothing when the search fails.
std::optional<mach_port_t> iteratorOver(const std::string& className) {
  if (className == kSmcClass) {
    if (mac().smcDevice == nullptr) return 0;
    return mac().names.add({.kind = "iterator of " + className, .handle = 1});
  }
  if (mac().accelerators == nullptr) return 0;
  const auto found = mac().accelerators->matchingServices(className);
  if (!found) return std::nullopt;
  if (*found == 0) return 0;
  const auto handle = *found;
  return mac().names.add({.kind = "iterator of " + className, .handle = handle, .atEnd = [handle] {
                            mac().accelerators->release(handle);
                          }});
}

}  // namespace

extern "C" {

kern_return_t IOMasterPort(mach_port_t bootstrapPort, mach_port_t* mainPort) {
  mac().expect(bootstrapPort == 0, "IOMasterPort of another port than 0");
  if (mac().fails("IOMasterPort")) return kError;
  *mainPort = mac().names.addReference("main port");
  return KERN_SUCCESS;
}

CFMutableDictionaryRef IOServiceMatching(const char* name) {
  if (mac().fails("IOServiceMatching")) return nullptr;
  FakeDictionary entries;
  entries.emplace_back(mac().objects.make(std::string("IOProviderClass")),
                       mac().objects.make(std::string(name)));
  return asDictionary(mac().objects.make(std::move(entries)));
}

kern_return_t IOServiceGetMatchingServices(mach_port_t mainPort, CFDictionaryRef matching,
                                           io_iterator_t* existing) {
  mac().names.find(mainPort, "main port", "IOServiceGetMatchingServices");
  if (matching == nullptr) return kBadArgument;
  const std::string className = classIn(matching);
  CFRelease(matching);
  if (mac().fails("IOServiceGetMatchingServices")) return kError;
  const auto iterator = iteratorOver(className);
  if (!iterator) return kError;
  *existing = *iterator;
  return KERN_SUCCESS;
}

io_object_t IOIteratorNext(io_iterator_t iterator) {
  if (iterator == 0) return 0;
  auto* found = mac().names.find(iterator, "iterator", "IOIteratorNext");
  if (found == nullptr || mac().fails("IOIteratorNext")) return 0;
  const std::string className = found->kind.substr(sizeof "iterator of " - 1);
  if (className == kSmcClass) {
    if (found->handle == 0) return 0;
    found->handle = 0;
    return mac().names.addReference("service " + className);
  }
  const auto handle = mac().accelerators->next(found->handle);
  if (handle == 0) return 0;
  return mac().names.add({.kind = "service " + className, .handle = handle, .atEnd = [handle] {
                            mac().accelerators->release(handle);
                          }});
}

kern_return_t IOObjectRelease(io_object_t object) {
  const auto* iterator = mac().names.find(object, "", "IOObjectRelease");
  if (iterator == nullptr) return kInvalidDestination;
  mac().expect(!iterator->kind.starts_with("connection"), "IOObjectRelease of a connection");
  mac().names.release(object, "", "IOObjectRelease");
  return KERN_SUCCESS;
}

kern_return_t IOServiceOpen(io_service_t service, task_port_t owningTask, uint32_t type,
                            io_connect_t* connect) {
  mac().names.find(service, "service AppleSMC", "IOServiceOpen");
  mac().expect(owningTask == mach_task_self(), "IOServiceOpen for another task");
  mac().expect(type == 0, "IOServiceOpen of another type than 0");
  if (mac().fails("IOServiceOpen")) return kNotPermitted;
  const auto handle = mac().smcDevice->open();
  if (!handle) return kNotPermitted;
  *connect = mac().names.add({.kind = "connection", .handle = *handle});
  return KERN_SUCCESS;
}

kern_return_t IOServiceClose(io_connect_t connect) {
  const auto* found = mac().names.find(connect, "connection", "IOServiceClose");
  if (found == nullptr) return kInvalidDestination;
  mac().smcDevice->close(found->handle);
  mac().names.release(connect, "connection", "IOServiceClose");
  return KERN_SUCCESS;
}

kern_return_t IOConnectCallStructMethod(mach_port_t connection, uint32_t selector,
                                        const void* inputStruct, size_t inputStructCnt,
                                        void* outputStruct, size_t* outputStructCnt) {
  mac().expect(selector == 2, "IOConnectCallStructMethod of another selector than 2");
  mac().expect(inputStructCnt == 80,
               "IOConnectCallStructMethod with an input that has not 80 bytes");
  mac().expect(*outputStructCnt == 80, "IOConnectCallStructMethod without room for 80 bytes");
  if (selector != 2 || inputStructCnt != 80 || *outputStructCnt != 80) return kBadArgument;
  if (connection == 0) return kNotOpen;  // as whoever could not open it asks
  const auto* found = mac().names.find(connection, "connection", "IOConnectCallStructMethod");
  if (found == nullptr) return kInvalidDestination;
  if (mac().fails("IOConnectCallStructMethod")) return kError;
  *outputStructCnt = sizeof(SMCRequestRecord);
  return mac().smcDevice->callStructMethod(found->handle, selector,
                                           *static_cast<const SMCRequestRecord*>(inputStruct),
                                           *static_cast<SMCRequestRecord*>(outputStruct));
}

kern_return_t IORegistryEntryCreateCFProperties(io_registry_entry_t entry,
                                                CFMutableDictionaryRef* properties,
                                                CFAllocatorRef allocator, IOOptionBits options) {
  mac().expect(allocator == nullptr && options == 0,
               "IORegistryEntryCreateCFProperties with options");
  mac().expect(*properties == nullptr, "a result that is not cleared before the call");
  const auto* found = mac().names.find(entry, "service", "IORegistryEntryCreateCFProperties");
  if (found == nullptr) return kInvalidDestination;
  if (mac().fails("IORegistryEntryCreateCFProperties")) return kInvalidDestination;
  if (mac().registryProperties) {
    *properties = mac().registryProperties();
    return KERN_SUCCESS;
  }
  const auto read = mac().accelerators->properties(found->handle);
  if (!read) return kInvalidDestination;
  *properties = asDictionary(mac().objects.makeFrom(*read));
  return KERN_SUCCESS;
}

}  // extern "C"
