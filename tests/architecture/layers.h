// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <map>
#include <set>
#include <string>
#include <utility>

#include "architecture/source_tree.h"

namespace pallimo::architecture {

/// The table of cmake/Layers.cmake.
struct Layers {
  std::map<std::string, int> floors;
  std::map<std::pair<std::string, std::string>, std::string> arrows;  ///< (from, to) to reason

  /// The folder with a floor that the path lies in, the deepest one; empty when there is none.
  std::string folderOf(const std::string& path) const {
    std::string best;
    for (const auto& [folder, floor] : floors) {
      if (startsWith(path, folder + "/") && folder.size() > best.size()) best = folder;
    }
    return best;
  }
};

inline Layers readLayers() {
  Layers layers;
  for (const std::string& line : splitLines(readText(root() / "cmake/Layers.cmake"))) {
    const bool isFloor = startsWith(line, "pallimo_floor(");
    if (!isFloor && !startsWith(line, "pallimo_arrow(")) continue;
    const std::size_t open = line.find('(') + 1;
    const std::size_t space = line.find(' ', open);
    const std::string first = line.substr(open, space - open);
    const std::size_t end = line.find_first_of(" )", space + 1);
    const std::string second = line.substr(space + 1, end - space - 1);
    if (isFloor) {
      layers.floors[second] = std::stoi(first);
    } else {
      const std::size_t quote = line.find('"');
      layers.arrows[{first, second}] =
          quote == std::string::npos ? "" : line.substr(quote + 1, line.rfind('"') - quote - 1);
    }
  }
  return layers;
}

}  // namespace pallimo::architecture
