// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

// See darwin_types.h.

#include <string.h>

#include "../darwin_types.h"

PALLIMO_BEGIN_C

typedef struct os_log_s* os_log_t;
typedef uint8_t os_log_type_t;
enum { OS_LOG_TYPE_DEFAULT = 0x00 };

extern struct os_log_s _os_log_default;
#ifdef __clang__
extern char __dso_handle;
#else
extern void* __dso_handle;  // as the compiler itself has it
#endif
#define OS_LOG_DEFAULT (&_os_log_default)

void _os_log_impl(void* dso, os_log_t log, os_log_type_t type, const char* format, uint8_t* buffer,
                  uint32_t size);

PALLIMO_END_C

// A message is handed over as its format and the arguments, packed: kinds, sizes, values. Clang
// packs them itself and checks them against the format.
#ifdef __clang__
#define os_log(log, format, ...)                                                          \
  do {                                                                                    \
    uint8_t osLogBuffer[__builtin_os_log_format_buffer_size(format, ##__VA_ARGS__)];      \
    _os_log_impl(&__dso_handle, (log), OS_LOG_TYPE_DEFAULT, (format),                     \
                 (uint8_t*)__builtin_os_log_format(osLogBuffer, (format), ##__VA_ARGS__), \
                 (uint32_t)sizeof osLogBuffer);                                           \
  } while (0)
#else
                            // Only what one public text needs.
#define os_log(log, format, text)                                                  \
  do {                                                                             \
    const char* const osLogText = (text);                                          \
    uint8_t osLogBuffer[12] = {2, 1, 0x22, 8};                                     \
    memcpy(osLogBuffer + 4, &osLogText, sizeof osLogText);                         \
    _os_log_impl(&__dso_handle, (log), OS_LOG_TYPE_DEFAULT, (format), osLogBuffer, \
                 sizeof osLogBuffer);                                              \
  } while (0)
#endif
