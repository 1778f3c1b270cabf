// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstddef>
#include <optional>

#include "ui/graph_data.h"

namespace pallimo::ui::widgets {

/// The furthest that a graph is said to have moved; beyond that drawing it anew costs no more.
inline constexpr std::size_t kLargestMovement = 32;

/// By how many points `earlier` has to move to the left so that only the newest points are
/// missing to make it `later`: 0 when both look the same, nothing when no movement will do.
///
/// Only the newest `visible` (1 or more) values of a series count, and not its id. Values are
/// compared as they are drawn: two that are not finite are alike. A change of colours, of the
/// number of series or of the number of labels is no movement. Pure, any thread.
std::optional<std::size_t> movement(const GraphView& earlier, const GraphView& later,
                                    std::size_t visible);

}  // namespace pallimo::ui::widgets
