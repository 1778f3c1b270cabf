// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <fstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace pallimo::tests {

/// One page of the project's `docs`.
class Page {
 public:
  using Texts = std::vector<std::string>;

  explicit Page(const std::string& name) {
    std::ifstream file(PALLIMO_SOURCE_DIR "/docs/" + name);
    for (std::string line; std::getline(file, line);) lines_.push_back(line);
  }

  const Texts& lines() const { return lines_; }

  /// The rows of the table in a section ("## Columns"), without its head.
  std::vector<Texts> rows(std::string_view section) const {
    std::vector<Texts> rows;
    bool isInside = false;
    for (const std::string& line : lines_) {
      if (line.starts_with("## ")) isInside = line == section;
      if (!isInside) continue;
      if (Texts cells = cellsOf(line); !cells.empty()) rows.push_back(std::move(cells));
    }
    constexpr std::ptrdiff_t kHead = 2;  // the titles and the line below them
    if (rows.size() >= kHead) rows.erase(rows.begin(), rows.begin() + kHead);
    return rows;
  }

  /// One column of that table.
  Texts cells(std::string_view section, std::size_t column) const {
    Texts cells;
    for (const Texts& row : rows(section)) cells.push_back(row.at(column));
    return cells;
  }

  static Texts splitAt(std::string_view separator, std::string_view text) {
    Texts parts;
    for (std::size_t end = text.find(separator); end != std::string_view::npos;
         end = text.find(separator)) {
      parts.emplace_back(text.substr(0, end));
      text.remove_prefix(end + separator.size());
    }
    parts.emplace_back(text);
    return parts;
  }

 private:
  /// The cells of a line "| one | two |"; none when the line is no row of a table.
  static Texts cellsOf(const std::string& line) {
    constexpr std::size_t kEdge = 2;  // "| " and " |"
    if (line.size() < 2 * kEdge || line[0] != '|') return {};
    return splitAt(" | ", std::string_view(line).substr(kEdge, line.size() - 2 * kEdge));
  }

  Texts lines_;
};

}  // namespace pallimo::tests
