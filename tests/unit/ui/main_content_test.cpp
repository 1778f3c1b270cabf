// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/main_content.h"

#include <gtest/gtest.h>

namespace pallimo::ui {
namespace {

TEST(MainContent, AnotherProcessorIsRefusedWhateverTheFlagsSay) {
  EXPECT_EQ(mainContent(false, false, false), MainContent::refusal);
  EXPECT_EQ(mainContent(false, true, false), MainContent::refusal);
  EXPECT_EQ(mainContent(false, false, true), MainContent::refusal);
}

TEST(MainContent, AnAuthorisedHelperGivesLiveFiguresEvenWhenAnUpdateIsNeeded) {
  EXPECT_EQ(mainContent(true, true, false), MainContent::live);
  EXPECT_EQ(mainContent(true, true, true), MainContent::live);
}

TEST(MainContent, AnOldHelperGivesTheUpdateScreen) {
  EXPECT_EQ(mainContent(true, false, true), MainContent::update);
}

TEST(MainContent, NoUsableHelperGivesTheInstallScreen) {
  EXPECT_EQ(mainContent(true, false, false), MainContent::install);
}

void expectShown(const MainContentText& shown, const MainContentText& expected) {
  EXPECT_EQ(shown.heading, expected.heading);
  EXPECT_EQ(shown.text, expected.text);
  EXPECT_EQ(shown.button, expected.button);
}

TEST(MainContentText, ARefusalIsItsTextAlone) {
  expectShown(
      mainContentText(MainContent::refusal, false),
      {"", "This app is only for Apple Silicon Cores.\nIt is not working on Intel Cores", ""});
}

TEST(MainContentText, LiveContentHasNeitherTextNorButton) {
  expectShown(mainContentText(MainContent::live, false), {"", "", ""});
}

TEST(MainContentText, AnUpdateHasItsTextAndAButton) {
  expectShown(mainContentText(MainContent::update, false),
              {"", "\nThe Pallimo Powermetrics Helper need being updated\n", "Update Helper"});
}

TEST(MainContentText, AnUpdateThatWasAskedForHasNoButton) {
  expectShown(mainContentText(MainContent::update, true),
              {"", "\nThe Pallimo Powermetrics Helper need being updated\n", ""});
}

TEST(MainContentText, AnInstallationHasAHeadingItsTextAndAButton) {
  expectShown(mainContentText(MainContent::install, false),
              {"Welcome", "\nBefore to start you need to install the Pallimo Powermetrics Helper\n",
               "Install Helper"});
}

TEST(MainContentText, AHiddenUpdateButtonHidesNothingElse) {
  for (const MainContent content :
       {MainContent::refusal, MainContent::live, MainContent::install}) {
    EXPECT_EQ(mainContentText(content, true), mainContentText(content, false));
  }
}

}  // namespace
}  // namespace pallimo::ui
