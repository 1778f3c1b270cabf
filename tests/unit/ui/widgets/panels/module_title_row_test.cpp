// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/widgets/panels/module_title_row.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QPixmap>

#include "ui/widgets/basics/colors.h"
#include "unit/ui/widgets/shown_widget.h"
#include "unit/ui/widgets/test_application.h"

namespace pallimo::ui::widgets {
namespace {

const ModuleTitle kPower{"Power", "WATTS", "Power in Watts. Data from powermetrics"};

class ModuleTitleRows : public testing::Test {
 protected:
  ModuleTitleRows() : application_(testApplication()) {
    row_.resize(334, ModuleTitleRow::kHeight);
    row_.setTitle(kPower);
  }

  /// Whether anything is written between two columns.
  bool isWritten(int begin, int end, const QColor& ground = Qt::white) {
    QPixmap pixmap(row_.size());
    row_.render(&pixmap);
    const QImage image = pixmap.toImage();
    for (int y = 0; y < image.height(); ++y) {
      for (int x = begin; x < end; ++x) {
        if (image.pixelColor(x, y) != ground) return true;
      }
    }
    return false;
  }

  QApplication& application_;
  ModuleTitleRow row_{nullptr};
};

TEST_F(ModuleTitleRows, TellTheHelpAsATip) {
  EXPECT_EQ(row_.toolTip(), "Power in Watts. Data from powermetrics");
}

TEST_F(ModuleTitleRows, AreReadAloud) {
  QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(&row_);
  EXPECT_EQ(spoken->text(QAccessible::Name), "Power WATTS");
  EXPECT_EQ(spoken->text(QAccessible::Description), "Power in Watts. Data from powermetrics");
  EXPECT_EQ(spoken->role(), QAccessible::StaticText);
}

TEST_F(ModuleTitleRows, WriteTheTitleAtTheLeftAndTheUnitAtTheRight) {
  EXPECT_TRUE(isWritten(0, 40));
  EXPECT_FALSE(isWritten(100, 250));
  EXPECT_TRUE(isWritten(300, 334));
}

TEST_F(ModuleTitleRows, CutNoTitle) {
  row_.setTitle({"Temperature", "℃", ""});
  EXPECT_TRUE(isWritten(60, 120));
  EXPECT_FALSE(isWritten(150, 300));
}

TEST_F(ModuleTitleRows, AreRepaintedWhenTheTitleChangesAndOnlyThen) {
  showAndWait(row_);
  PaintLog log(row_);
  row_.setTitle(kPower);
  settle();
  EXPECT_TRUE(log.painted().empty());
  row_.setTitle({"Temperature", "℉", ""});
  settle();
  EXPECT_EQ(log.painted().size(), 1u);
}

TEST_F(ModuleTitleRows, StandOnThePanelsGround) {
  row_.setColorScheme(ColorScheme::dark);
  EXPECT_FALSE(isWritten(100, 250, toColor(colorsOf(ColorScheme::dark).panel)));
}

}  // namespace
}  // namespace pallimo::ui::widgets
