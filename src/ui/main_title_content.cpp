// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/main_title_content.h"

namespace pallimo::ui {

MainTitleContent mainTitleContent(const modules::ModuleModelMainTitle& model) {
  using enum FontRole;
  const std::string chipCores = "(" + std::to_string(model.numberOfECore()) + " E-Cores + " +
                                std::to_string(model.numberOfPCore()) + " P-Cores)";
  const std::string gpuCores = "(" + std::to_string(model.numberOfGPUCore()) + " GPU-Cores)";
  return {{
      {{model.appleSiliconName(), title2Bold}, {chipCores, title3Medium}},
      {{model.gpuName(), title3Bold}, {gpuCores, headlineMedium}},
  }};
}

}  // namespace pallimo::ui
