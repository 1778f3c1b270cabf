// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/widgets/graph_canvas.h"

#include <gtest/gtest.h>

#include <QPainter>

#include "unit/ui/widgets/random_graph.h"
#include "unit/ui/widgets/test_application.h"

namespace pallimo::ui::widgets {
namespace {

using Painted = GraphCanvas::Painted;

constexpr QSize kBox(316, 92);

QImage paintedAnew(const GraphView& graph, int ratio, ColorScheme scheme = ColorScheme::light,
                   QSize box = kBox) {
  GraphCanvas canvas;
  canvas.draw(graph, box, ratio, scheme);
  return canvas.image();
}

class GraphCanvasAt : public testing::TestWithParam<int> {
 protected:
  GraphCanvasAt() { testApplication(); }

  Painted draw(ColorScheme scheme = ColorScheme::light) {
    return canvas_.draw(random_.graph(), kBox, GetParam(), scheme);
  }
  bool isAsPaintedAnew(ColorScheme scheme = ColorScheme::light) {
    return canvas_.image() == paintedAnew(random_.graph(), GetParam(), scheme);
  }

  RandomGraph random_{17};
  GraphCanvas canvas_;
};

INSTANTIATE_TEST_SUITE_P(WholeRatios, GraphCanvasAt, testing::Values(1, 2, 3));

TEST_P(GraphCanvasAt, IsTheSameToTheLastBitWhetherMovedOrPaintedAnew) {
  random_.addSamples(1);
  draw();
  for (int sample = 0; sample < 600; ++sample) {
    random_.addSamples(1);
    ASSERT_EQ(draw(), Painted::newColumns) << "sample " << sample;
    ASSERT_TRUE(isAsPaintedAnew()) << "sample " << sample;
  }
}

TEST_P(GraphCanvasAt, MovesBySeveralSamplesAtOnce) {
  random_.addSamples(5);
  draw();
  for (int step = 0; step < 60; ++step) {
    random_.addSamples(1 + static_cast<std::size_t>(step) % 32);
    ASSERT_EQ(draw(), Painted::newColumns) << "step " << step;
    ASSERT_TRUE(isAsPaintedAnew()) << "step " << step;
  }
}

}  // namespace
}  // namespace pallimo::ui::widgets
