// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/fresh_id.h"

#include <cstdint>

#include "base/uuid.h"

namespace pallimo::ui {

std::string freshId(ports::RandomNumbers& random) {
  const std::uint64_t high = random.next();
  const std::uint64_t low = random.next();
  return base::uuidText(high, low);
}

}  // namespace pallimo::ui
