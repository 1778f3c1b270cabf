// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "architecture/layers.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <string>
#include <utility>

namespace pallimo::architecture {
namespace {

/// The folder of the tree that a quoted include leads to; empty when it is no project header.
std::string targetFolder(const Layers& layers, const std::string& header) {
  for (const std::string& path : {"src/" + header, header}) {
    if (std::filesystem::exists(root() / path)) return layers.folderOf(path);
  }
  return {};
}

TEST(Layers, TheTableIsRead) {
  const Layers layers = readLayers();
  EXPECT_EQ(layers.floors.at("src/base"), 1);
  EXPECT_GT(layers.arrows.size(), 20u);
}

TEST(Layers, EveryArrowPointsDownAndHasAReason) {
  const Layers layers = readLayers();
  for (const auto& [arrow, reason] : layers.arrows) {
    EXPECT_LT(layers.floors.at(arrow.second), layers.floors.at(arrow.first))
        << arrow.first << " -> " << arrow.second;
    EXPECT_FALSE(reason.empty()) << arrow.first << " -> " << arrow.second;
  }
}

TEST(Layers, EverySourceFileLiesInAFolderOfTheTable) {
  const Layers layers = readLayers();
  for (const SourceFile& file : productSources()) {
    EXPECT_FALSE(layers.folderOf(file.path).empty()) << file.path;
  }
}

TEST(Layers, EveryIncludeFollowsAnArrow) {
  const Layers layers = readLayers();
  for (const SourceFile& file : productSources()) {
    const std::string from = layers.folderOf(file.path);
    for (const std::string& line : file.lines) {
      const std::string to = targetFolder(layers, includedHeader(line));
      if (to.empty() || to == from) continue;
      EXPECT_TRUE(layers.arrows.count({from, to}) == 1) << file.path << ": " << line;
    }
  }
}

TEST(Layers, EveryArrowIsUsed) {
  const Layers layers = readLayers();
  std::set<std::pair<std::string, std::string>> used;
  for (const SourceFile& file : productSources()) {
    for (const std::string& line : file.lines) {
      used.insert({layers.folderOf(file.path), targetFolder(layers, includedHeader(line))});
    }
  }
  for (const auto& [arrow, reason] : layers.arrows) {
    EXPECT_TRUE(used.count(arrow) == 1) << "nobody uses " << arrow.first << " -> " << arrow.second;
  }
}

}  // namespace
}  // namespace pallimo::architecture
