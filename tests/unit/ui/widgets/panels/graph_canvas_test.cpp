// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/widgets/panels/graph_canvas.h"

#include <gtest/gtest.h>

#include <QPainter>

#include "unit/ui/widgets/panels/example_panels.h"
#include "unit/ui/widgets/panels/random_graph.h"
#include "unit/ui/widgets/test_application.h"

namespace pallimo::ui::widgets {
namespace {

using Painted = GraphCanvas::Painted;

constexpr QSize kBox(316, 92);

QImage paintedAnew(const GraphView& graph, int ratio, ColorScheme scheme = ColorScheme::light,
                   QSize box = kBox) {
  GraphCanvas canvas;
  canvas.draw(graph, box, ratio, scheme);
  return canvas.image().copy();  // the canvas ends here
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
  for (int sample = 0; sample < 400; ++sample) {
    random_.addSamples(1);
    ASSERT_EQ(draw(), Painted::newColumns) << "sample " << sample;
    ASSERT_TRUE(isAsPaintedAnew()) << "sample " << sample;
  }
}

TEST_P(GraphCanvasAt, IsTheSameToTheLastBitAlsoWhereLinesAreSmooth) {
  std::vector<GraphCanvas> canvases(examplePanels().size());
  for (int moment = 0; moment < 100; ++moment) {
    const std::vector<Panel> panels = examplePanels(moment);
    for (std::size_t i = 0; i < panels.size(); ++i) {
      const GraphView& graph = panels[i].graph;
      const Painted painted = canvases[i].draw(graph, kBox, GetParam(), ColorScheme::light);
      ASSERT_EQ(painted, moment == 0 ? Painted::everything : Painted::newColumns);
      ASSERT_EQ(canvases[i].image(), paintedAnew(graph, GetParam()))
          << "panel " << i << " at " << moment;
    }
  }
}

TEST_P(GraphCanvasAt, FillsTheSameGroundAsAPainter) {
  const int ratio = GetParam();
  for (const ColorScheme scheme : {ColorScheme::light, ColorScheme::dark}) {
    GraphView empty = random_.graph();
    empty.datas.clear();
    QImage painted(kBox * ratio, QImage::Format_RGB32);
    QPainter painter(&painted);
    painter.scale(ratio, ratio);
    paintColumns(painter, empty, kBox, scheme, {0, kBox.width()});
    painter.end();
    EXPECT_EQ(paintedAnew(empty, ratio, scheme), painted);
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

TEST_P(GraphCanvasAt, PaintsNothingForAGraphThatLooksTheSame) {
  random_.addSamples(400);
  draw();
  random_.graph().datas[0].id = "another";
  EXPECT_EQ(draw(), Painted::nothing);
  EXPECT_TRUE(isAsPaintedAnew());
}

TEST_P(GraphCanvasAt, PaintsEverythingAfterMoreSamplesThanItMovesBy) {
  random_.addSamples(400);
  draw();
  random_.addSamples(40);
  EXPECT_EQ(draw(), Painted::everything);
  EXPECT_TRUE(isAsPaintedAnew());
}

TEST_P(GraphCanvasAt, PaintsEverythingWhenTheAxisChanges) {
  random_.addSamples(100);
  draw();
  for (GraphData& series : random_.graph().datas) {
    for (double& value : series.data) value /= 2;
  }
  EXPECT_EQ(draw(), Painted::everything);
  EXPECT_TRUE(isAsPaintedAnew());
  random_.graph().axisLabels = {"10", "5", "0"};
  EXPECT_EQ(draw(), Painted::everything);
  EXPECT_TRUE(isAsPaintedAnew());
}

TEST_P(GraphCanvasAt, PaintsEverythingWhenTheHistoriesAreCleared) {
  random_.addSamples(100);
  draw();
  random_.clear();
  EXPECT_EQ(draw(), Painted::everything);
  EXPECT_TRUE(isAsPaintedAnew());
  random_.addSamples(3);
  EXPECT_EQ(draw(), Painted::newColumns);
  EXPECT_TRUE(isAsPaintedAnew());
}

TEST_P(GraphCanvasAt, PaintsEverythingWhenASeriesComesOrGoes) {
  random_.addSamples(100);
  draw();
  random_.graph().datas.pop_back();
  EXPECT_EQ(draw(), Painted::everything);
  EXPECT_TRUE(isAsPaintedAnew());
}

TEST_P(GraphCanvasAt, PaintsEverythingInAnotherScheme) {
  random_.addSamples(100);
  draw();
  random_.addSamples(1);
  EXPECT_EQ(draw(ColorScheme::dark), Painted::everything);
  EXPECT_TRUE(isAsPaintedAnew(ColorScheme::dark));
  random_.addSamples(1);
  EXPECT_EQ(draw(ColorScheme::dark), Painted::newColumns);
  EXPECT_TRUE(isAsPaintedAnew(ColorScheme::dark));
}

TEST_P(GraphCanvasAt, PaintsEverythingAtAnotherDensity) {
  random_.addSamples(100);
  draw();
  const int another = GetParam() + 1;
  EXPECT_EQ(canvas_.draw(random_.graph(), kBox, another, ColorScheme::light), Painted::everything);
  EXPECT_EQ(canvas_.image(), paintedAnew(random_.graph(), another));
}

TEST_P(GraphCanvasAt, PaintsEverythingInAnotherSize) {
  random_.addSamples(100);
  draw();
  const QSize another(200, 72);
  EXPECT_EQ(canvas_.draw(random_.graph(), another, GetParam(), ColorScheme::light),
            Painted::everything);
  EXPECT_EQ(canvas_.image(), paintedAnew(random_.graph(), GetParam(), ColorScheme::light, another));
  EXPECT_EQ(canvas_.image().size(), another * GetParam());
}

TEST_P(GraphCanvasAt, IsTheSameInABoxWiderThanTheHistories) {
  const QSize wide(RandomGraph::kHistory + 50, 30);
  random_.addSamples(RandomGraph::kHistory - 10);
  for (int sample = 0; sample < 30; ++sample) {
    random_.addSamples(1);
    canvas_.draw(random_.graph(), wide, GetParam(), ColorScheme::light);
    ASSERT_EQ(canvas_.image(), paintedAnew(random_.graph(), GetParam(), ColorScheme::light, wide))
        << "sample " << sample;
  }
}

TEST_P(GraphCanvasAt, IsTheSameInABoxOfAFewPoints) {
  for (int width = 1; width < 12; ++width) {
    GraphCanvas narrow;
    for (int sample = 0; sample < 10; ++sample) {
      random_.addSamples(1);
      narrow.draw(random_.graph(), {width, 20}, GetParam(), ColorScheme::light);
      ASSERT_EQ(narrow.image(),
                paintedAnew(random_.graph(), GetParam(), ColorScheme::light, {width, 20}))
          << width << " points";
    }
  }
}

}  // namespace
}  // namespace pallimo::ui::widgets
