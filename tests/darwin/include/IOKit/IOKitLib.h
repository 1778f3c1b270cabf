// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

// See darwin_types.h.

#include "../CoreFoundation/CoreFoundation.h"
#include "../mach/mach.h"

PALLIMO_BEGIN_C

typedef kern_return_t IOReturn;
typedef UInt32 IOOptionBits;
typedef mach_port_t io_object_t;
typedef io_object_t io_connect_t;
typedef io_object_t io_iterator_t;
typedef io_object_t io_registry_entry_t;
typedef io_object_t io_service_t;

#define IO_OBJECT_NULL ((io_object_t)0)

kern_return_t IOMasterPort(mach_port_t bootstrapPort, mach_port_t* mainPort)
    __attribute__((deprecated("from macOS 12 on it is named IOMainPort")));
CFMutableDictionaryRef IOServiceMatching(const char* name);
/// Consumes one reference of `matching`, also when it fails.
kern_return_t IOServiceGetMatchingServices(mach_port_t mainPort, CFDictionaryRef matching,
                                           io_iterator_t* existing);
io_object_t IOIteratorNext(io_iterator_t iterator);
kern_return_t IOObjectRelease(io_object_t object);
kern_return_t IOServiceOpen(io_service_t service, task_port_t owningTask, uint32_t type,
                            io_connect_t* connect);
kern_return_t IOServiceClose(io_connect_t connect);
kern_return_t IOConnectCallStructMethod(mach_port_t connection, uint32_t selector,
                                        const void* inputStruct, size_t inputStructCnt,
                                        void* outputStruct, size_t* outputStructCnt);
kern_return_t IORegistryEntryCreateCFProperties(io_registry_entry_t entry,
                                                CFMutableDictionaryRef* properties,
                                                CFAllocatorRef allocator, IOOptionBits options);

PALLIMO_END_C
