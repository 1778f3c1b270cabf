// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <IOKit/IOKitLib.h>
#include <mach/mach.h>
#include <sys/sysctl.h>

#include <cstddef>
#include <string>
#include <utility>

#include "adapters/macos/c_adapters.h"
#include "adapters/macos/system_values.h"

// IOMasterPort has another name since macOS 12; the old one does the same on every system.
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"

namespace pallimo::adapters::macos {
namespace {

constexpr std::size_t kSmcRecordSize = 80;
static_assert(sizeof(ports::SMCRequestRecord) == kSmcRecordSize);

std::optional<io_iterator_t> servicesOf(const char* className) {
  // The main port is one name for the whole process. Asking again only adds a reference, which is
  // not given back.
  mach_port_t mainPort = MACH_PORT_NULL;
  if (IOMasterPort(MACH_PORT_NULL, &mainPort) != KERN_SUCCESS) return std::nullopt;
  // The search consumes the dictionary, also when it fails, and refuses one that is missing.
  io_iterator_t iterator = IO_OBJECT_NULL;
  const kern_return_t result =
      IOServiceGetMatchingServices(mainPort, IOServiceMatching(className), &iterator);
  if (result != KERN_SUCCESS) return std::nullopt;
  return iterator;
}

class SmcDevice final : public ports::SmcDevice {
 public:
  std::optional<std::uint32_t> open() override {
    const auto iterator = servicesOf("AppleSMC");
    if (!iterator) return std::nullopt;
    // Neither iterator nor service is released, as the port promises: connections are opened on
    // them for as long as the process runs, and the kernel takes them back with it.
    const io_service_t service = IOIteratorNext(*iterator);
    if (service == IO_OBJECT_NULL) return std::nullopt;
    io_connect_t connection = IO_OBJECT_NULL;
    const kern_return_t result = IOServiceOpen(service, mach_task_self(), 0, &connection);
    if (result != KERN_SUCCESS) return std::nullopt;
    return connection;
  }

  std::int32_t callStructMethod(std::uint32_t connection, std::uint32_t selector,
                                const ports::SMCRequestRecord& input,
                                ports::SMCRequestRecord& output) override {
    std::size_t outputSize = kSmcRecordSize;
    return IOConnectCallStructMethod(connection, selector, &input, kSmcRecordSize, &output,
                                     &outputSize);
  }

  void close(std::uint32_t connection) override { IOServiceClose(connection); }
};

class AcceleratorRegistry final : public ports::AcceleratorRegistry {
 public:
  std::optional<std::uint32_t> matchingServices(std::string_view className) override {
    return servicesOf(std::string(className).c_str());
  }

  std::uint32_t next(std::uint32_t iterator) override { return IOIteratorNext(iterator); }

  std::optional<base::PropertyList> properties(std::uint32_t entry) override {
    CFMutableDictionaryRef dictionary = nullptr;  // not written when the call fails
    const kern_return_t result =
        IORegistryEntryCreateCFProperties(entry, &dictionary, kCFAllocatorDefault, 0);
    const CFRef owned(dictionary);
    if (result != KERN_SUCCESS) return std::nullopt;
    return propertyListFrom(owned.get()).value_or(base::PropertyList());
  }

  void release(std::uint32_t object) override { IOObjectRelease(object); }
};

class SystemControls final : public ports::SystemControls {
 public:
  std::optional<base::Bytes> bytes(std::string_view name) const override {
    const std::string variable(name);
    std::size_t size = 0;
    if (sysctlbyname(variable.c_str(), nullptr, &size, nullptr, 0) != 0) return std::nullopt;
    base::Bytes value(size);
    if (sysctlbyname(variable.c_str(), value.data(), &size, nullptr, 0) != 0) return std::nullopt;
    value.resize(size);
    return value;
  }
};

class ProcessorTicks final : public ports::ProcessorTicks {
 public:
  ~ProcessorTicks() override { mach_port_deallocate(mach_task_self(), host_); }

  std::optional<std::vector<ports::ProcessorTickCounts>> read() override {
    natural_t processors = 0;
    integer_t* words = nullptr;
    mach_msg_type_number_t size = 0;
    const kern_return_t result =
        host_processor_info(host_, PROCESSOR_CPU_LOAD_INFO, &processors, &words, &size);
    std::vector<ports::ProcessorTickCounts> ticks(result == KERN_SUCCESS ? processors : 0);
    const integer_t* word = words;
    for (ports::ProcessorTickCounts& counts : ticks) {
      for (std::uint32_t& count : counts) count = static_cast<std::uint32_t>(*word++);
    }
    // The kernel has mapped them into this task; for nothing it is allowed, too.
    vm_deallocate(mach_task_self(), reinterpret_cast<vm_address_t>(words), size * sizeof *words);
    return result == KERN_SUCCESS ? std::optional(std::move(ticks)) : std::nullopt;
  }

 private:
  // Every call adds a reference: one for the object, not one for each sample.
  const mach_port_t host_ = mach_host_self();
};

}  // namespace
std::unique_ptr<ports::SmcDevice> makeSmcDevice() { return std::make_unique<SmcDevice>(); }
std::unique_ptr<ports::AcceleratorRegistry> makeAcceleratorRegistry() {
  return std::make_unique<AcceleratorRegistry>();
}
std::unique_ptr<ports::SystemControls> makeSystemControls() {
  return std::make_unique<SystemControls>();
}
std::unique_ptr<ports::ProcessorTicks> makeProcessorTicks() {
  return std::make_unique<ProcessorTicks>();
}
}  // namespace pallimo::adapters::macos
