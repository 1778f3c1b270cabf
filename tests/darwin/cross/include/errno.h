// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

// A Mac's name for where errno stands, over another system's C library.

#include_next <errno.h>

#ifdef __cplusplus
extern "C" {
#endif
int* __error(void);
#ifdef __cplusplus
}
#endif

#undef errno
#define errno (*__error())
