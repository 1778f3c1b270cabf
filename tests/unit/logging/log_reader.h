// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace pallimo::tests {

/// Reads a log as its page tells others to: a line feed ends every line, comma and space stand
/// between the columns, nothing is quoted. Throws where a line has not as many columns as the
/// first.
class LogReader {
 public:
  using Cells = std::vector<std::string>;

  explicit LogReader(std::string_view text) {
    while (!text.empty()) {
      const std::size_t end = text.find('\n');
      if (end == std::string_view::npos) throw std::runtime_error("the last line does not end");
      add(cellsOf(text.substr(0, end)));
      text.remove_prefix(end + 1);
    }
  }

  const Cells& header() const { return lines_.at(0); }
  /// Rows below the header.
  std::size_t rows() const { return lines_.size() - 1; }
  const std::string& cell(std::size_t row, std::size_t column) const {
    return lines_.at(row + 1).at(column);
  }
  double number(std::size_t row, std::size_t column) const { return std::stod(cell(row, column)); }

  /// One column's cells, oldest row first.
  Cells column(std::size_t column) const {
    Cells cells;
    for (std::size_t row = 0; row < rows(); ++row) cells.push_back(cell(row, column));
    return cells;
  }

 private:
  static Cells cellsOf(std::string_view line) {
    Cells cells;
    for (std::size_t end = line.find(", "); end != std::string_view::npos; end = line.find(", ")) {
      cells.emplace_back(line.substr(0, end));
      line.remove_prefix(end + 2);
    }
    cells.emplace_back(line);
    return cells;
  }

  void add(Cells cells) {
    if (!lines_.empty() && cells.size() != header().size()) {
      throw std::runtime_error("a line with " + std::to_string(cells.size()) + " columns");
    }
    lines_.push_back(std::move(cells));
  }

  std::vector<Cells> lines_;
};

}  // namespace pallimo::tests
