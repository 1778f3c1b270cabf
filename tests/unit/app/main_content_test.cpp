// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "app/main_content.h"

#include <gtest/gtest.h>

namespace pallimo::app {
namespace {

using helper_link::Processor;

TEST(MainContent, AnotherProcessorIsRefusedWhateverTheFlagsSay) {
  EXPECT_EQ(mainContent(Processor::other, false, false), MainContent::refusal);
  EXPECT_EQ(mainContent(Processor::other, true, false), MainContent::refusal);
  EXPECT_EQ(mainContent(Processor::other, false, true), MainContent::refusal);
}

TEST(MainContent, AnAuthorisedHelperGivesLiveFiguresEvenWhenAnUpdateIsNeeded) {
  EXPECT_EQ(mainContent(Processor::appleSilicon, true, false), MainContent::live);
  EXPECT_EQ(mainContent(Processor::appleSilicon, true, true), MainContent::live);
}

TEST(MainContent, AnOldHelperGivesTheUpdateScreen) {
  EXPECT_EQ(mainContent(Processor::appleSilicon, false, true), MainContent::update);
}

TEST(MainContent, NoUsableHelperGivesTheInstallScreen) {
  EXPECT_EQ(mainContent(Processor::appleSilicon, false, false), MainContent::install);
}

}  // namespace
}  // namespace pallimo::app
