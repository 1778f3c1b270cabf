// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "app/headless/headless_table.h"

#include <array>
#include <string_view>

#include "base/text_format.h"
#include "logging/log_file_data.h"

namespace pallimo::app {

namespace {

struct Column {
  std::string_view name;
  std::size_t width;
  int decimals;
  double logging::LogRow::*value;
};

using logging::LogRow;

// As narrow as the figures let them be: a terminal shows all of them in 123 places. Degrees take
// three (110, nan, -1) and percentages five (100.0), each with the space before it.
constexpr std::array<Column, 5> kPower = {{{"package", 8, 2, &LogRow::pkgPower},
                                           {"CPU", 7, 2, &LogRow::cpuPower},
                                           {"GPU", 7, 2, &LogRow::gpuPower},
                                           {"ANE", 7, 2, &LogRow::anePower},
                                           {"DRAM", 7, 2, &LogRow::dramPower}}};
constexpr std::array<Column, 3> kFrequency = {{{"E-core", 7, 0, &LogRow::cpuECoreFrequency},
                                               {"P-core", 7, 0, &LogRow::cpuPCoreFrequency},
                                               {"GPU", 6, 0, &LogRow::gpuFrequency}}};
// "C" as in the log, not the degree sign: every byte of a line is one place, whatever the terminal.
constexpr std::array<Column, 4> kTemperature = {{{"min", 4, 0, &LogRow::cpuMinTmp},
                                                 {"avg", 4, 0, &LogRow::cpuAvgTmp},
                                                 {"max", 4, 0, &LogRow::cpuMaxTmp},
                                                 {"GPU", 4, 0, &LogRow::gpuAvgTmp}}};
constexpr std::array<Column, 4> kUtilisation = {{{"CPU", 6, 1, &LogRow::cpuUtilization},
                                                 {"E-core", 7, 1, &LogRow::cpuEUtilization},
                                                 {"P-core", 7, 1, &LogRow::cpuPUtilization},
                                                 {"GPU", 6, 1, &LogRow::gpuUtilization}}};

constexpr std::size_t kClockWidth = 8;    // HH:mm:ss
constexpr std::size_t kElapsedWidth = 9;  // a day of seconds with one decimal, and a space
constexpr std::string_view kGap = "  ";   // between groups

void appendRight(std::string& line, std::string_view text, std::size_t width) {
  if (text.size() < width) line.append(width - text.size(), ' ');
  line += text;
}

template <std::size_t N>
void appendTitle(std::string& line, std::string_view title, const std::array<Column, N>& group) {
  std::size_t width = 0;
  for (const Column& column : group) width += column.width;
  line += kGap;
  line += ' ';
  line += title;
  line += ' ';
  line.append(width - title.size() - 2, '-');
}

template <std::size_t N>
void appendNames(std::string& line, const std::array<Column, N>& group) {
  line += kGap;
  for (const Column& column : group) appendRight(line, column.name, column.width);
}

template <std::size_t N>
void appendFigures(std::string& line, const LogRow& row, const std::array<Column, N>& group) {
  line += kGap;
  for (const Column& column : group) {
    appendRight(line, base::formatFixed(row.*column.value, column.decimals), column.width);
  }
}

}  // namespace

std::string tableHeader() {
  std::string line(kClockWidth + kElapsedWidth, ' ');
  appendTitle(line, "Power (W)", kPower);
  appendTitle(line, "Frequency (MHz)", kFrequency);
  appendTitle(line, "Temp. (C)", kTemperature);
  appendTitle(line, "Utilisation (%)", kUtilisation);
  line += '\n';
  appendRight(line, "time", kClockWidth);
  appendRight(line, "sec", kElapsedWidth);
  appendNames(line, kPower);
  appendNames(line, kFrequency);
  appendNames(line, kTemperature);
  appendNames(line, kUtilisation);
  line += '\n';
  return line;
}

std::string tableLine(const LogRow& row, std::chrono::system_clock::time_point first) {
  const std::chrono::duration<double> elapsed = row.time - first;
  std::string line = logging::formatRow(row, first).timeStamp.substr(0, kClockWidth);
  appendRight(line, base::formatFixed(elapsed.count(), 1), kElapsedWidth);
  appendFigures(line, row, kPower);
  appendFigures(line, row, kFrequency);
  appendFigures(line, row, kTemperature);
  appendFigures(line, row, kUtilisation);
  line += '\n';
  return line;
}

}  // namespace pallimo::app
