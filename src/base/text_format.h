// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <string>

namespace pallimo::base {

/// Switches the calling thread to the "C" locale for a scope, so that numbers are read and written
/// with a decimal point whatever the user's locale is (Qt sets the process's locale at start; the
/// pair of calls costs a few nanoseconds).
class CLocaleScope {
 public:
  CLocaleScope();
  ~CLocaleScope();
  CLocaleScope(const CLocaleScope&) = delete;
  CLocaleScope& operator=(const CLocaleScope&) = delete;

 private:
  void* previous_;  // a locale_t; void* keeps <locale.h> out of this header
};

/// `value` as C's "%.<decimals>f" writes it in the "C" locale, except that not-a-number is "nan" on
/// every processor (x86 writes "-nan" for 0/0).
std::string formatFixed(double value, int decimals);

/// Appends the same text to `out`, without a temporary.
void appendFixed(std::string& out, double value, int decimals);

}  // namespace pallimo::base
