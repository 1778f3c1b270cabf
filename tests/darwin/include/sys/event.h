// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

// See darwin_types.h.

#include <stdint.h>
#include <time.h>

#ifdef __cplusplus
extern "C" {
#endif

struct kevent {
  uintptr_t ident;
  int16_t filter;
  uint16_t flags;
  uint32_t fflags;
  intptr_t data;
  void* udata;
};

#define EVFILT_PROC (-5)
#define EVFILT_SIGNAL (-6)
#define EV_ADD 0x0001
#define NOTE_EXIT 0x80000000

int kqueue(void);
int kevent(int kq, const struct kevent* changes, int changeCount, struct kevent* events,
           int eventCount, const struct timespec* timeout);

#ifdef __cplusplus
}
#endif
