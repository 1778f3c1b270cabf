// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <QAccessible>
#include <QClipboard>
#include <QTimer>

#include "end_to_end/window/window_app.h"
#include "ui/copy_values.h"
#include "ui/widgets/panels/graph_widget.h"
#include "ui/widgets/panels/value_widget.h"
#include "ui/widgets/settings/settings_toolbar.h"
#include "ui/widgets/settings/tab_button.h"

namespace pallimo::end_to_end {
namespace {

/// What can be reached without a mouse and without a look at the screen.
class Keyboard : public WindowApp {
 protected:
  static QString nameOf(QObject* object) {
    return QAccessible::queryAccessibleInterface(object)->text(QAccessible::Name);
  }
  /// What the Tab key comes to, until it begins anew.
  static QStringList reachedByTab() {
    QStringList names;
    press(Qt::Key_Tab);
    QWidget* const first = QApplication::focusWidget();
    do {
      names.append(nameOf(QApplication::focusWidget()));
      press(Qt::Key_Tab);
    } while (QApplication::focusWidget() != first && names.size() < 20);
    return names;
  }
  /// All that stands in the window for whoever hears the screen.
  static QStringList heard(QWidget& shown) {
    QStringList names;
    for (auto* child : shown.findChildren<QWidget*>()) {
      if (child->isVisible() && !nameOf(child).isEmpty()) names.append(nameOf(child));
    }
    return names;
  }
  static QString clipboard() { return QApplication::clipboard()->text(); }
  QString shownValues() const {
    std::vector<ui::Panel> panels;
    for (const auto* shown : window().liveContent().panels()) panels.push_back(shown->panel());
    return QString::fromStdString(ui::copyValuesText(panels));
  }
};

TEST_F(Keyboard, ReachesWhatTheInstallScreenOffers) {
  startApp();
  EXPECT_EQ(reachedByTab(), QStringList({"More", "Install Helper"}));
}

TEST_F(Keyboard, ReachesWhatTheSettingsOffer) {
  startApp();
  openSettings();
  const QStringList general = reachedByTab();
  for (const char* name : {"Close", "℃ — Celcius", "Select"}) {
    EXPECT_TRUE(general.contains(name)) << name;
  }
  settings().toolbar().selectTab(ui::SettingsTab::extra);
  const QStringList extra = reachedByTab();
  EXPECT_EQ(extra.count("Show GPU"), 2);
  EXPECT_EQ(extra.count("Show E-Core/P-Core"), 1);
  EXPECT_FALSE(extra.contains("Select"));
}

TEST_F(Keyboard, ReachesWhatThePanelsOffer) {
  startLive();
  EXPECT_EQ(reachedByTab(), QStringList({"More", "Power graph", "Frequency graph",
                                         "Temperature graph", "Utilization graph"}));
}

TEST_F(Keyboard, ReadsAGraphSampleBySample) {
  startLive();
  ASSERT_TRUE(samples(6));
  ASSERT_TRUE(goByKeysTo(graph(kPower)));
  for (int keys = 0; keys < 5; ++keys) press(Qt::Key_Left);
  EXPECT_TRUE(soon([this] {
    const QString& heard = graph(kPower).accessibleDescription();
    return heard.startsWith("CPU ") && heard.endsWith(", 5 s ago");
  }));
}

TEST_F(Keyboard, SpeaksEveryFigureThatIsShown) {
  startLive();
  ASSERT_TRUE(samples(1));
  const QStringList names = heard(window());
  for (const char* title : {"Power WATTS", "Frequency GHZ", "Temperature ℃", "Utilization %"}) {
    EXPECT_TRUE(names.contains(title)) << title;
  }
  for (const char* unit : {"watts", "gigahertz", "degrees Celsius", "percent"}) {
    EXPECT_FALSE(names.filter(unit).isEmpty()) << unit;
  }
  const auto* value = panelWidget(kPower).values().at(0);
  EXPECT_TRUE(soon([&] {
    return value->accessibleName() ==
           QString::fromStdString("PKG " + panel(kPower).columns.at(0).values.at(0).value +
                                  " watts");
  }));
}

TEST_F(Keyboard, CopiesTheValues) {
  startLive();
  // A sample may come between the key and the look.
  ASSERT_TRUE(soon([this] {
    press(Qt::Key_C, Qt::ControlModifier);
    return clipboard() == shownValues();
  }));
  const QStringList lines = clipboard().split('\n', Qt::SkipEmptyParts);
  EXPECT_EQ(lines.size(), 4 + 2 + 4 + 1);
  for (const QString& line : lines) EXPECT_EQ(line.count('\t'), 3) << line.toStdString();
  EXPECT_TRUE(lines[0].startsWith("Power\tPKG\t"));
  EXPECT_TRUE(lines[0].endsWith("\tWATTS"));
}

TEST_F(Keyboard, CopiesTheValuesFromAPanelsContextMenuToo) {
  startLive();
  click(*window().liveContent().panels().at(kFrequency), Qt::RightButton);
  auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
  ASSERT_NE(menu, nullptr);
  choose(*menu, "Copy Values");
  EXPECT_EQ(clipboard().split('\n', Qt::SkipEmptyParts).size(), 11);
}

TEST_F(Keyboard, CopiesNothingFromTheInstallScreen) {
  startApp();
  QApplication::clipboard()->setText("kept");
  press(Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(clipboard(), "kept");
}

TEST_F(Keyboard, ClosesTheLastWindowAndWithItTheProgram) {
  startLive();
  QTimer::singleShot(0, &window(), [] { press(Qt::Key_W, Qt::ControlModifier); });
  EXPECT_EQ(QCoreApplication::exec(), 0);
  EXPECT_FALSE(window().isVisible());
}

}  // namespace
}  // namespace pallimo::end_to_end
