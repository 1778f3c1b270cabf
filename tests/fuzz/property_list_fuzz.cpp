// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

// Any bytes through the reader and the sample parser. Beside what the sanitizers see, it holds what
// the modules rely on: the keys of each result, no figure out of bounds, and that a document read
// in part is accepted, refused and understood as the whole is.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>

#include "adapters/libplist/libplist_reader.h"
#include "fuzz/require.h"
#include "sampling/sample_parser.h"
#include "unit/adapters/libplist/only_wanted.h"

namespace {

using pallimo::adapters::libplist::LibplistReader;
using pallimo::base::Bytes;
using pallimo::base::PropertyList;
using pallimo::fuzz::require;

void checkValue(const PropertyList& value, int level) {
  if (const auto* array = value.array()) {
    require(level < 1'000);
    for (const PropertyList& item : *array) checkValue(item, level + 1);
  }
  if (const auto* dictionary = value.dictionary()) {
    require(level < 1'000);
    std::set<std::string_view> keys;
    for (const auto& [key, item] : *dictionary) {
      require(keys.insert(key).second);
      checkValue(item, level + 1);
    }
  }
}

void checkFigures(const PropertyList& sample) {
  namespace sampling = pallimo::sampling;
  const auto frequencies = sampling::clusterFrequencies(sample);
  require(frequencies.size() == 2);
  require(frequencies.at("E-Cluster") >= 0 && frequencies.at("P-Cluster") >= 0);
  const auto cpus = sampling::clusterCPUs(sample);
  require(cpus.empty() ||
          (cpus.size() == 2 && cpus.contains("E-Cluster") && cpus.contains("P-Cluster")));
  const auto gpu = sampling::gpuFrequency(sample);
  require(gpu.empty() || (gpu.size() == 1 && gpu.contains("freq_hz")));
  require(sampling::powerValues(sample).size() <= 5);
}

/// What follows an XML document changes nothing.
void checkRest(std::span<const std::uint8_t> bytes, bool isDocument) {
  const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
  if (!isDocument || text.starts_with("bplist")) return;
  Bytes longer(bytes.begin(), bytes.end());
  for (const char c : std::string_view("\0</array><array>", 16)) {
    longer.push_back(static_cast<std::uint8_t>(c));
  }
  require(LibplistReader().read(longer).has_value());
}

/// The keys of a sample, so that captured documents are cut as they are in the app, and short ones,
/// which the fuzzer finds sooner.
void checkPart(std::span<const std::uint8_t> bytes, const std::optional<PropertyList>& whole) {
  static const pallimo::ports::Wanted wanted{
      {"processor", {{"clusters", {{"name"}, {"cpus", {{"cpu"}}}}}, {"cpu_energy"}}},
      {"a", {{"b"}, {"x", {{"a"}}}}},
      {"b"}};
  std::optional<PropertyList> expected;
  if (whole) expected = pallimo::tests::onlyWanted(*whole, wanted);
  require(pallimo::tests::isSame(LibplistReader().readOnly(bytes, wanted), expected));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::span<const std::uint8_t> bytes(data, size);
  const std::optional<PropertyList> value = LibplistReader().read(bytes);
  if (value) checkValue(*value, 1);
  checkRest(bytes, value.has_value());
  checkPart(bytes, value);
  checkFigures(pallimo::sampling::parseSample(LibplistReader(), bytes));
  return 0;
}
