// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "sensors/sg_system_profiler.h"

#include <charconv>
#include <string_view>
#include <system_error>

namespace pallimo::sensors {

namespace {

constexpr std::int64_t kUnknownCount = -1;

/// The array's first element when that is a dictionary. A Mac without a display may well give an
/// empty array.
const base::PropertyList* firstDictionary(const base::PropertyList* list) {
  const base::PropertyListArray* array = list == nullptr ? nullptr : list->array();
  if (array == nullptr || array->empty()) return nullptr;
  return array->front().dictionary() == nullptr ? nullptr : &array->front();
}

/// A whole text of decimal digits with at most one sign; the unknown count for any other.
std::int64_t countIn(std::string_view text) {
  if (text.starts_with('+')) {
    text.remove_prefix(1);
    if (text.starts_with('-')) return kUnknownCount;
  }
  std::int64_t count = 0;
  const char* const end = text.data() + text.size();
  const std::from_chars_result parsed = std::from_chars(text.data(), end, count);
  return parsed.ec == std::errc() && parsed.ptr == end ? count : kUnknownCount;
}

}  // namespace

std::optional<base::PropertyList> SGSystemProfiler::profilerItem(
    const std::string& dataType) const {
  const std::optional<base::Bytes> output =
      launcher_.run("/usr/sbin/system_profiler", {"-xml", dataType});
  if (!output) return std::nullopt;
  const std::optional<base::PropertyList> report = reader_.read(*output);
  if (!report) return std::nullopt;
  const base::PropertyList* section = firstDictionary(&*report);
  if (section == nullptr) return std::nullopt;
  const base::PropertyList* item = firstDictionary(section->find("_items"));
  if (item == nullptr) return std::nullopt;
  return *item;
}

std::int64_t SGSystemProfiler::gpuCoreCount() const {
  const std::optional<base::PropertyList> item = profilerItem("SPDisplaysDataType");
  if (!item) return kUnknownCount;
  const base::PropertyList* cores = item->find("sppci_cores");
  if (cores == nullptr || cores->text() == nullptr) return kUnknownCount;
  return countIn(*cores->text());
}

}  // namespace pallimo::sensors
