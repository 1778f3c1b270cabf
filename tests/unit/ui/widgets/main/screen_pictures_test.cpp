// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <gtest/gtest.h>

#include <QAbstractItemView>

#include "unit/ui/widgets/main/main_window_fixture.h"
#include "unit/ui/widgets/panels/kept_picture.h"
#include "unit/ui/widgets/settings/settings_window_fixture.h"

namespace pallimo::ui::widgets {
namespace {

QString nameOf(ColorScheme scheme) { return scheme == ColorScheme::dark ? "dark" : "light"; }

class MainWindowPictures : public MainWindowFixture {};

TEST_F(MainWindowPictures, ShowEachScreenInBothSchemes) {
  for (const auto scheme : {ColorScheme::light, ColorScheme::dark}) {
    window().setColorScheme(scheme);
    shown();
    change(refusalContent());
    keepPicture(window(), "refusal-" + nameOf(scheme));
    change(installContent());
    keepPicture(window(), "install-" + nameOf(scheme));
    QTest::keyClick(&window(), Qt::Key_Backtab);
    keepPicture(window(), "install-focus-" + nameOf(scheme));
    change(updateContent());
    keepPicture(window(), "update-" + nameOf(scheme));
    QTest::mouseClick(shownButton(), Qt::LeftButton);
    keepPicture(window(), "updating-" + nameOf(scheme));
    change(liveContentAt(0));
    keepPicture(window(), "live-" + nameOf(scheme));
    isLogEnabled_ = true;
    window().mainMenuBar().popUp(QPoint());
    settle();
    QWidget* const bar = QApplication::activePopupWidget();
    keepPicture(*bar, "main-menu-" + nameOf(scheme));
    QMenu* logging = window().mainMenuBar().menus()[2];
    logging->popup(QPoint());
    settle();
    keepPicture(*logging, "logging-menu-" + nameOf(scheme));
    while (QWidget* open = QApplication::activePopupWidget()) open->close();
  }
}

class SettingsPictures : public SettingsWindowFixture {};

TEST_F(SettingsPictures, ShowEachTabInBothSchemes) {
  defaults_.setBool(settings_key::kGpuFrequency, true);
  defaults_.setBool(settings_key::kGpuUtilization, true);
  for (const auto scheme : {ColorScheme::light, ColorScheme::dark}) {
    window().setColorScheme(scheme);
    window().toolbar().selectTab(SettingsTab::general);
    shown();
    keepPicture(window(), "settings-general-" + nameOf(scheme));
    window().general().temperature().showPopup();
    settle();
    keepPicture(*window().general().temperature().view()->window(),
                "settings-choices-" + nameOf(scheme));
    window().general().temperature().hidePopup();
    for (int i = 0; i < 5; ++i) {
      QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
      keepPicture(window(), "settings-focus-" + QString::number(i) + nameOf(scheme));
    }
    window().toolbar().selectTab(SettingsTab::extra);
    settle();
    keepPicture(window(), "settings-extra-" + nameOf(scheme));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    keepPicture(window(), "settings-extra-focus-" + nameOf(scheme));
  }
}

}  // namespace
}  // namespace pallimo::ui::widgets
