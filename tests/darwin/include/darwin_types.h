// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

// Declarations of this project's own for what its adapters call of a Mac's C interfaces. On the
// include path only where the real headers are not; C and C++, Objective-C too.

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
#define PALLIMO_BEGIN_C extern "C" {
#define PALLIMO_END_C }
#else
#define PALLIMO_BEGIN_C
#define PALLIMO_END_C
#endif

// Fixed-width names of the system's old headers.
typedef unsigned char Boolean;
typedef unsigned char UInt8;
typedef unsigned int UInt32;
typedef int SInt32;
typedef SInt32 OSStatus;
