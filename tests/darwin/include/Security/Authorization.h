// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

// See darwin_types.h.

#include <stdio.h>

#include "../darwin_types.h"

PALLIMO_BEGIN_C

typedef const struct AuthorizationOpaqueRef* AuthorizationRef;
typedef UInt32 AuthorizationFlags;
typedef const char* AuthorizationString;

typedef struct {
  AuthorizationString name;
  size_t valueLength;
  void* value;
  UInt32 flags;
} AuthorizationItem;
typedef struct {
  UInt32 count;
  AuthorizationItem* items;
} AuthorizationItemSet;
typedef AuthorizationItemSet AuthorizationRights;
typedef AuthorizationItemSet AuthorizationEnvironment;

enum {
  kAuthorizationFlagDefaults = 0,
  kAuthorizationFlagInteractionAllowed = 1 << 0,
  kAuthorizationFlagExtendRights = 1 << 1,
  kAuthorizationFlagPreAuthorize = 1 << 4
};
#define kAuthorizationEmptyEnvironment ((const AuthorizationEnvironment*)NULL)

OSStatus AuthorizationCreate(const AuthorizationRights* rights,
                             const AuthorizationEnvironment* environment, AuthorizationFlags flags,
                             AuthorizationRef* authorization);
OSStatus AuthorizationCopyRights(AuthorizationRef authorization, const AuthorizationRights* rights,
                                 const AuthorizationEnvironment* environment,
                                 AuthorizationFlags flags, AuthorizationRights** authorizedRights);

PALLIMO_END_C
