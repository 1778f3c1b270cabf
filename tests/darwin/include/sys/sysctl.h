// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

// See darwin_types.h.

#include "../darwin_types.h"

PALLIMO_BEGIN_C

int sysctlbyname(const char* name, void* oldp, size_t* oldlenp, void* newp, size_t newlen);

PALLIMO_END_C
