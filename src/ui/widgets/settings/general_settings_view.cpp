// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/widgets/settings/general_settings_view.h"

#include <QLabel>
#include <utility>

#include "ui/display_settings.h"
#include "ui/settings_content.h"
#include "ui/widgets/basics/focus_ring.h"
#include "ui/widgets/basics/help_on_focus.h"
#include "ui/widgets/basics/push_button.h"
#include "ui/widgets/basics/text.h"
#include "ui/widgets/settings/choice_box.h"

namespace pallimo::ui::widgets {
namespace {

constexpr int kTemperatureMiddle = 24;
constexpr int kTemperatureTop = 38;
constexpr int kDivider = 75;
constexpr int kLogFileMiddle = 98;
constexpr int kFolderMiddle = 119;
constexpr int kSelectTop = 136;

}  // namespace

GeneralSettingsView::GeneralSettingsView(ports::UserDefaults& defaults, LogFolderServices folders,
                                         QWidget* parent)
    : SettingsPage(parent),
      defaults_(defaults),
      folders_(std::move(folders)),
      temperature_(new ChoiceBox(this)),
      folder_(new FolderRow(folders_.icons, this)),
      select_(new PushButton(ButtonLook::plain, this)) {
  addTemperature();
  addDivider(kDivider);
  addLogFolder();
}

void GeneralSettingsView::addTemperature() {
  addHeading(toText(kTemperatureHeading), kTemperatureMiddle)->setBuddy(temperature_);
  for (const TemperatureChoice& choice : kTemperatureChoices) {
    temperature_->addItem(toText(choice.label));
  }
  temperature_->setAccessibleName(toText(kTemperatureHeading));
  temperature_->setGeometry(
      QRect(QPoint(kIndent - kFocusRing, kTemperatureTop - kFocusRing), temperature_->sizeHint()));
  connect(temperature_, &QComboBox::activated, this, [this](int index) {
    storeTemperatureChoice(defaults_, kTemperatureChoices[static_cast<std::size_t>(index)]);
  });
}

void GeneralSettingsView::addLogFolder() {
  addHeading(toText(kLogFileHeading), kLogFileMiddle)->setBuddy(select_);
  folder_->setGeometry(kIndent, kFolderMiddle - FolderRow::kHeight / 2, kWidth - kMargin - kIndent,
                       FolderRow::kHeight);
  select_->setText(selectFolderText());
  select_->setAccessibleDescription(toText(kLogFileHeading));
  select_->setGeometry(
      QRect(QPoint(kIndent - kFocusRing, kSelectTop - kFocusRing), select_->sizeHint()));
  new HelpOnFocus(*select_, *folder_, [this] { return folder_->isShortened(); });
  connect(select_, &QAbstractButton::clicked, this, &GeneralSettingsView::chooseLogFolder);
}

void GeneralSettingsView::setColorScheme(ColorScheme scheme) {
  SettingsPage::setColorScheme(scheme);
  temperature_->setColorScheme(scheme);
  folder_->setColorScheme(scheme);
  select_->setColorScheme(scheme);
}

void GeneralSettingsView::refresh() {
  const auto choice = storedTemperatureChoice(defaults_);
  temperature_->setCurrentIndex(choice ? static_cast<int>(*choice) : -1);
  folder_->setFolder(QString::fromStdString(logFolder()));
}

std::string GeneralSettingsView::logFolder() const {
  return effectiveLogFolder(defaults_.textForKey(settings_key::kPathFolderLocation),
                            folders_.modelFolder(), folders_.desktopFolder, folders_.isDirectory);
}

void GeneralSettingsView::chooseLogFolder() {
  storeLogFolder(defaults_, folders_.chooser(*this, logFolder()));
}

}  // namespace pallimo::ui::widgets
