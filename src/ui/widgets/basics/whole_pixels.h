// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <QTransform>
#include <cmath>

namespace pallimo::ui::widgets {

/// Whether a painter's device transform puts whole points on whole pixels, m11() of them a point.
/// Only then can an image of something be kept and moved; else it has to be painted where it
/// stands.
inline bool hasWholePixels(const QTransform& transform) {
  return transform.type() <= QTransform::TxScale && transform.m11() >= 1 &&
         transform.m11() == transform.m22() && transform.m11() == std::floor(transform.m11()) &&
         transform.dx() == std::floor(transform.dx()) &&
         transform.dy() == std::floor(transform.dy());
}

}  // namespace pallimo::ui::widgets
