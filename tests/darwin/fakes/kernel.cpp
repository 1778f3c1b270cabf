// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

// The fakes of the kernel's own calls: Mach and sysctl.

#include <mach/mach.h>
#include <sys/sysctl.h>

#include <cerrno>
#include <cstring>
#include <string>
#include <utility>

#include "darwin/fakes/fake_mac.h"

using pallimo::darwin::mac;

extern "C" {

mach_port_t mach_task_self_ = 0x203;

mach_port_t mach_host_self() { return mac().names.addReference("host port"); }

kern_return_t mach_port_deallocate(mach_port_t task, mach_port_name_t name) {
  mac().expect(task == mach_task_self(), "mach_port_deallocate in another task");
  return mac().names.release(name, "", "mach_port_deallocate") ? KERN_SUCCESS : 15;
}

kern_return_t host_processor_info(host_t host, processor_flavor_t flavor, natural_t* count,
                                  processor_info_array_t* info, mach_msg_type_number_t* infoCount) {
  mac().names.find(host, "host port", "host_processor_info");
  mac().expect(flavor == 2, "host_processor_info of another flavour than 2");
  mac().expect(*info == nullptr && *infoCount == 0, "a result that is not cleared before the call");
  if (mac().fails("host_processor_info")) return 5;
  const auto ticks = mac().processorTicks == nullptr ? std::nullopt : mac().processorTicks->read();
  if (!ticks) return 5;
  std::vector<integer_t> words;
  for (const auto& counts : *ticks) {
    for (const std::uint32_t each : counts) words.push_back(static_cast<integer_t>(each));
  }
  *count = static_cast<natural_t>(ticks->size());
  *infoCount = static_cast<mach_msg_type_number_t>(words.size());
  words.reserve(words.size() + 1);  // that no processors have an address too
  *info = words.data();
  const integer_t* const address = words.data();
  mac().mapped.emplace(address, std::move(words));
  return KERN_SUCCESS;
}

kern_return_t vm_deallocate(vm_map_t task, vm_address_t address, vm_size_t size) {
  mac().expect(task == mach_task_self(), "vm_deallocate in another task");
  mac().journal.push_back("vm_deallocate " + std::to_string(size));
  if (address == 0 && size == 0) return KERN_SUCCESS;
  const auto found = mac().mapped.find(reinterpret_cast<const integer_t*>(address));
  if (found == mac().mapped.end()) {
    mac().complain("vm_deallocate of what is not mapped");
    return 1;
  }
  mac().expect(size == found->second.size() * sizeof(integer_t), "vm_deallocate of another size");
  mac().mapped.erase(found);
  return KERN_SUCCESS;
}

int sysctlbyname(const char* name, void* oldp, size_t* oldlenp, void* newp, size_t newlen) {
  mac().expect(newp == nullptr && newlen == 0, "sysctlbyname that writes a variable");
  const auto value =
      mac().systemControls == nullptr ? std::nullopt : mac().systemControls->bytes(name);
  if (mac().fails("sysctlbyname") || !value) {
    errno = ENOENT;
    return -1;
  }
  if (oldp != nullptr && *oldlenp < value->size()) {
    errno = ENOMEM;
    return -1;
  }
  if (oldp != nullptr && !value->empty()) std::memcpy(oldp, value->data(), value->size());
  *oldlenp = value->size();
  return 0;
}

}  // extern "C"
