// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

// A Mac's name for standard error, over another system's C library.

#include_next <stdio.h>

#ifdef __cplusplus
extern "C" {
#endif
extern FILE* __stderrp;
#ifdef __cplusplus
}
#endif

#undef stderr
#define stderr __stderrp
