// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

// See darwin_types.h.

#include "../darwin_types.h"

PALLIMO_BEGIN_C

typedef int boolean_t;
typedef int integer_t;
typedef int kern_return_t;
typedef unsigned int natural_t;
typedef natural_t mach_port_t;
typedef natural_t mach_port_name_t;
typedef natural_t mach_msg_type_number_t;
typedef mach_port_t host_t;
typedef mach_port_t task_t;
typedef mach_port_t task_port_t;
typedef mach_port_t vm_map_t;
typedef int processor_flavor_t;
typedef integer_t* processor_info_array_t;
typedef uintptr_t vm_address_t;
typedef uintptr_t vm_size_t;

#define KERN_SUCCESS 0
#define MACH_PORT_NULL 0
#define PROCESSOR_CPU_LOAD_INFO 2
#define CPU_STATE_MAX 4

extern mach_port_t mach_task_self_;
#define mach_task_self() mach_task_self_

mach_port_t mach_host_self(void);
kern_return_t mach_port_deallocate(mach_port_t task, mach_port_name_t name);
kern_return_t host_processor_info(host_t host, processor_flavor_t flavor, natural_t* count,
                                  processor_info_array_t* info, mach_msg_type_number_t* infoCount);
kern_return_t vm_deallocate(vm_map_t task, vm_address_t address, vm_size_t size);

PALLIMO_END_C
