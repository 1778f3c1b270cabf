// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

namespace pallimo::architecture {

/// A file of the source tree, read whole.
struct SourceFile {
  std::string path;                ///< relative to the root, for example "src/base/mutex.h"
  std::vector<std::string> lines;  ///< without line ends
};

inline std::string readText(const std::filesystem::path& path) {
  std::ifstream stream(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

inline std::vector<std::string> splitLines(const std::string& text) {
  std::vector<std::string> lines;
  std::size_t start = 0;
  while (start < text.size()) {
    const std::size_t end = text.find('\n', start);
    lines.push_back(text.substr(start, end - start));
    if (end == std::string::npos) break;
    start = end + 1;
  }
  return lines;
}

inline std::filesystem::path root() { return PALLIMO_SOURCE_DIR; }

/// The C++ and Objective-C++ files below `folder`, in order of path.
inline std::vector<SourceFile> sourcesBelow(const std::string& folder) {
  std::vector<SourceFile> files;
  if (!std::filesystem::exists(root() / folder)) return files;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(root() / folder)) {
    const std::string extension = entry.path().extension().string();
    if (extension != ".h" && extension != ".cpp" && extension != ".mm") continue;
    files.push_back({std::filesystem::relative(entry.path(), root()).generic_string(),
                     splitLines(readText(entry.path()))});
  }
  std::sort(files.begin(), files.end(),
            [](const SourceFile& a, const SourceFile& b) { return a.path < b.path; });
  return files;
}

/// Everything that ships.
inline std::vector<SourceFile> productSources() {
  std::vector<SourceFile> files = sourcesBelow("src");
  for (const char* folder : {"helper", "tools"}) {
    for (SourceFile& file : sourcesBelow(folder)) files.push_back(std::move(file));
  }
  return files;
}

inline bool startsWith(std::string_view text, std::string_view prefix) {
  return text.substr(0, prefix.size()) == prefix;
}

/// The header that an #include line names in quotes or angle brackets; empty when it is none.
inline std::string includedHeader(const std::string& line) {
  std::size_t at = line.find_first_not_of(" \t");
  if (at == std::string::npos || line[at] != '#') return {};
  at = line.find_first_not_of(" \t", at + 1);
  if (at == std::string::npos) return {};
  if (line.compare(at, 7, "include") != 0 && line.compare(at, 6, "import") != 0) return {};
  const std::size_t open = line.find_first_of("\"<", at);
  if (open == std::string::npos) return {};
  const std::size_t close = line.find_first_of("\">", open + 1);
  return line.substr(open + 1, close - open - 1);
}

}  // namespace pallimo::architecture
