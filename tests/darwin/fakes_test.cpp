// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

// That the fakes see what a program does wrong: otherwise the other tests of this folder would hold
// nothing.

#include <CoreFoundation/CoreFoundation.h>
#include <IOKit/IOKitLib.h>
#include <Security/Authorization.h>
#include <ServiceManagement/ServiceManagement.h>
#include <gtest/gtest.h>
#include <sys/sysctl.h>

#include <array>

#include "adapters/macos/hid_event_system.h"
#include "darwin/on_a_mac.h"

#pragma GCC diagnostic ignored "-Wdeprecated-declarations"

namespace pallimo::darwin {
namespace {

class Fakes : public testing::Test, protected TestMac {
 protected:
  Fakes() { smc.setFloat("Te05", 45); }

  /// What was complained of since the last call.
  Lines complaints() {
    Lines fresh(mac.complaints().begin() + static_cast<std::ptrdiff_t>(seen_),
                mac.complaints().end());
    seen_ = mac.complaints().size();
    return fresh;
  }

  static CFStringRef text(const char* value) {
    return CFStringCreateWithCString(nullptr, value, kCFStringEncodingUTF8);
  }

  io_connect_t opened() {
    mach_port_t mainPort = 0;
    IOMasterPort(0, &mainPort);
    io_iterator_t iterator = 0;
    IOServiceGetMatchingServices(mainPort, IOServiceMatching("AppleSMC"), &iterator);
    io_connect_t connection = 0;
    IOServiceOpen(IOIteratorNext(iterator), mach_task_self(), 0, &connection);
    return connection;
  }

  kern_return_t call(io_connect_t connection, std::uint32_t selector, std::size_t inputSize,
                     std::size_t outputSize) {
    ports::SMCRequestRecord input;
    input.key = 0x54653035;
    input.keyInfoDataSize = 4;
    input.data8 = 5;
    ports::SMCRequestRecord output;
    return IOConnectCallStructMethod(connection, selector, &input, inputSize, &output, &outputSize);
  }

 private:
  std::size_t seen_ = 0;
};

TEST_F(Fakes, AReferenceThatIsNotGivenBackIsHeld) {
  const CFStringRef kept = text("kept");
  EXPECT_EQ(mac.held(), Lines{"text \"kept\""});
  CFRetain(kept);
  CFRelease(kept);
  EXPECT_EQ(mac.held(), Lines{"text \"kept\""});
  CFRelease(kept);
  EXPECT_EQ(mac.held(), Lines{});
  EXPECT_EQ(complaints(), Lines{});
}

TEST_F(Fakes, AReleaseTooMuchIsAComplaint) {
  const CFStringRef gone = text("gone");
  CFRelease(gone);
  CFRelease(gone);
  CFRelease(nullptr);
  EXPECT_EQ(complaints(), (Lines{"CFRelease of an object that is gone: text \"gone\"",
                                 "CFRelease of no object"}));
}

TEST_F(Fakes, ReleasingWhatIsOnlyBorrowedIsAComplaintWhenItsOwnerEnds) {
  const CFMutableDictionaryRef matching = IOServiceMatching("AppleSMC");
  const void* key = nullptr;
  const void* value = nullptr;
  CFDictionaryGetKeysAndValues(matching, &key, &value);
  CFRelease(value);
  CFRelease(matching);
  EXPECT_EQ(complaints(), Lines{"the end of a dictionary of an object that is gone: text "
                                "\"AppleSMC\""});
}

TEST_F(Fakes, ADictionaryKeepsWhatIsPutIntoIt) {
  const CFMutableDictionaryRef dictionary = CFDictionaryCreateMutable(
      nullptr, 0, &kCFTypeDictionaryKeyCallBacks, &kCFTypeDictionaryValueCallBacks);
  const CFStringRef key = text("key");
  CFDictionarySetValue(dictionary, key, key);
  CFRelease(key);
  EXPECT_EQ(CFDictionaryGetCount(dictionary), 1);
  EXPECT_EQ(mac.held(), (Lines{"dictionary", "text \"key\""}));
  CFRelease(dictionary);
  EXPECT_EQ(mac.held(), Lines{});
}

TEST_F(Fakes, AnObjectOfAnotherKindIsAComplaint) {
  const CFStringRef string = text("x");
  CFDataGetLength(reinterpret_cast<CFDataRef>(string));
  CFRelease(string);
  EXPECT_EQ(complaints(), Lines{"CFDataGetLength of another kind of object: text \"x\""});
}

TEST_F(Fakes, ASearchConsumesItsDictionaryAlsoWhenItFails) {
  mach_port_t mainPort = 0;
  IOMasterPort(0, &mainPort);
  accelerators.setSearchFails(true);
  const CFMutableDictionaryRef matching = IOServiceMatching("IOAccelerator");
  io_iterator_t iterator = 7;
  EXPECT_NE(IOServiceGetMatchingServices(mainPort, matching, &iterator), 0);
  EXPECT_EQ(iterator, 7u) << "the result is not written";
  CFRelease(matching);
  EXPECT_EQ(complaints(), Lines{"CFRelease of an object that is gone: dictionary"});
}

TEST_F(Fakes, ACallToTheSmcMustBeTheOneThatItTakes) {
  const io_connect_t connection = opened();
  EXPECT_EQ(call(connection, 2, 80, 80), 0);
  EXPECT_EQ(complaints(), Lines{});
  EXPECT_NE(call(connection, 1, 80, 80), 0);
  EXPECT_NE(call(connection, 2, 79, 80), 0);
  EXPECT_NE(call(connection, 2, 80, 0), 0);
  EXPECT_EQ(complaints(), (Lines{"IOConnectCallStructMethod of another selector than 2",
                                 "IOConnectCallStructMethod with an input that has not 80 bytes",
                                 "IOConnectCallStructMethod without room for 80 bytes"}));
  IOServiceClose(connection);
}

TEST_F(Fakes, AClosedConnectionIsDead) {
  const io_connect_t connection = opened();
  IOServiceClose(connection);
  EXPECT_NE(call(connection, 2, 80, 80), 0);
  EXPECT_NE(IOServiceClose(connection), 0);
  EXPECT_EQ(complaints(), (Lines{"IOConnectCallStructMethod of a name that is no connection",
                                 "IOServiceClose of a name that is no connection"}));
}

TEST_F(Fakes, AConnectionIsClosedAndNotReleased) {
  const io_connect_t connection = opened();
  IOObjectRelease(connection);
  EXPECT_EQ(complaints(), Lines{"IOObjectRelease of a connection"});
  smc.close(0x1001);
}

TEST_F(Fakes, AnEntryThatIsReleasedIsDead) {
  accelerators.add({});
  mach_port_t mainPort = 0;
  IOMasterPort(0, &mainPort);
  io_iterator_t iterator = 0;
  IOServiceGetMatchingServices(mainPort, IOServiceMatching("IOAccelerator"), &iterator);
  const io_object_t entry = IOIteratorNext(iterator);
  EXPECT_EQ(IOObjectRelease(entry), 0);
  CFMutableDictionaryRef properties = nullptr;
  EXPECT_EQ(IORegistryEntryCreateCFProperties(entry, &properties, nullptr, 0), 0x10000003);
  EXPECT_NE(IOObjectRelease(entry), 0);
  EXPECT_EQ(IOObjectRelease(iterator), 0);
  EXPECT_EQ(complaints(), (Lines{"IORegistryEntryCreateCFProperties of a name that is no service",
                                 "IOObjectRelease of a name that is no "}));
  EXPECT_EQ(mac.held(), Lines{"1 x main port"});
}

TEST_F(Fakes, MemoryOfTheKernelsMustBeFreedOnceAndWhole) {
  ticks.set({{1, 2, 3, 4}});
  const host_t host = mach_host_self();
  natural_t count = 0;
  processor_info_array_t words = nullptr;
  mach_msg_type_number_t size = 0;
  ASSERT_EQ(host_processor_info(host, 2, &count, &words, &size), 0);
  EXPECT_EQ(mac.held(), (Lines{"1 x host port", "4 mapped words"}));
  const auto address = reinterpret_cast<vm_address_t>(words);
  vm_deallocate(mach_task_self(), address, 4);
  vm_deallocate(mach_task_self(), address, 16);
  EXPECT_EQ(complaints(),
            (Lines{"vm_deallocate of another size", "vm_deallocate of what is not mapped"}));
  mach_port_deallocate(mach_task_self(), host);
  EXPECT_EQ(mac.held(), Lines{});
}

TEST_F(Fakes, AHidClientMustMatchNumbersOf32BitsAndReadTheFirstField) {
  hid.add("Tp0i", 40);
  const auto client = IOHIDEventSystemClientCreate(nullptr);
  IOHIDEventSystemClientSetMatching(client, nullptr);
  EXPECT_EQ(complaints(), Lines{"a HID client that matches everything"});
  CFRelease(client);
  const auto second = IOHIDEventSystemClientCreate(nullptr);
  const CFMutableDictionaryRef none = CFDictionaryCreateMutable(
      nullptr, 0, &kCFTypeDictionaryKeyCallBacks, &kCFTypeDictionaryValueCallBacks);
  IOHIDEventSystemClientSetMatching(second, none);
  CFRelease(none);
  const CFArrayRef services = IOHIDEventSystemClientCopyServices(second);
  const void* const first = CFArrayGetValueAtIndex(services, 0);
  const auto service = static_cast<IOHIDServiceClientRef>(const_cast<void*>(first));
  const IOHIDEventRef event = IOHIDServiceClientCopyEvent(service, 15, nullptr, 1);
  EXPECT_EQ(complaints(), Lines{"an event that is to match, or with options"});
  EXPECT_EQ(IOHIDEventGetFloatValue(event, 15), 40);
  EXPECT_EQ(complaints(), Lines{"a field that is not the first of the event's type"});
  CFRelease(event);
  CFRelease(services);
  CFRelease(second);
  CFRelease(service);
  EXPECT_EQ(complaints(), Lines{"CFRelease of an object that is gone: HID service"});
  EXPECT_EQ(mac.held(), Lines{});
}

TEST_F(Fakes, AConsentIsAskedForAsItIsMeant) {
  AuthorizationRef authorization = nullptr;
  AuthorizationCreate(nullptr, nullptr, 1, &authorization);
  const CFStringRef label = text("label");
  SMJobBless(label, label, authorization, nullptr);
  CFRelease(label);
  EXPECT_EQ(complaints(), (Lines{"AuthorizationCreate with rights, an environment or flags",
                                 "SMJobBless in another domain"}));
}

TEST_F(Fakes, AVariableIsReadAndNotWritten) {
  int value = 1;
  sysctlbyname("hw.cputype", nullptr, nullptr, &value, sizeof value);
  EXPECT_EQ(complaints(), Lines{"sysctlbyname that writes a variable"});
}

TEST_F(Fakes, TheNthCallThatCanFailDoes) {
  mac.failCall(2);
  for (const bool isMade : {true, false, true}) {
    const CFStringRef string = text("x");
    EXPECT_EQ(string != nullptr, isMade);
    if (string != nullptr) CFRelease(string);
  }
  EXPECT_EQ(mac.fallibleCalls(), Lines(3, "CFStringCreateWithCString"));
}

}  // namespace
}  // namespace pallimo::darwin
