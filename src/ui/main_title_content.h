// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <array>
#include <string>

#include "modules/module_model_main_title.h"

namespace pallimo::ui {

/// The text styles of the main title, largest first. Sizes are the system's.
enum class FontRole { title2Bold, title3Bold, title3Medium, headlineMedium };

struct TitleText {
  std::string text;
  FontRole font = FontRole::title2Bold;
  bool operator==(const TitleText&) const = default;
};

/// What stands side by side: a name, and in brackets how many cores it has.
struct MainTitleLine {
  TitleText name;
  TitleText cores;
  bool operator==(const MainTitleLine&) const = default;
};

/// The line of the chip, then that of its GPU.
using MainTitleContent = std::array<MainTitleLine, 2>;

/// Counts stand there as they are, an unknown one as -1. Pure, any thread.
MainTitleContent mainTitleContent(const modules::ModuleModelMainTitle& model);

}  // namespace pallimo::ui
