// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/simulated/recordings/recorded_sensors_reader.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace pallimo::adapters::simulated {

using nlohmann::json;

namespace {

constexpr std::size_t kSmcValueSize = 32;
constexpr std::size_t kNameLength = 4;

std::optional<unsigned> hexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return std::nullopt;
}

std::optional<base::Bytes> decodeHex(std::string_view text) {
  if (text.size() % 2 != 0) return std::nullopt;
  base::Bytes bytes;
  bytes.reserve(text.size() / 2);
  for (std::size_t i = 0; i < text.size(); i += 2) {
    const auto high = hexDigit(text[i]);
    const auto low = hexDigit(text[i + 1]);
    if (!high || !low) return std::nullopt;
    bytes.push_back(static_cast<std::uint8_t>(*high * 16 + *low));
  }
  return bytes;
}

SmcBytes readSmcBytes(const JsonNode& node) {
  if (node.isNull()) return std::nullopt;
  constexpr const char* kExpected = "at most 32 bytes in hex, or null";
  const auto decoded = decodeHex(node.text(kExpected));
  if (!decoded || decoded->size() > kSmcValueSize) node.fail(kExpected);
  std::array<std::uint8_t, kSmcValueSize> bytes{};
  std::copy(decoded->begin(), decoded->end(), bytes.begin());
  return bytes;
}

std::string readFourCharacters(const JsonNode& node, const std::string& key) {
  constexpr const char* kExpected = "a text of four ASCII characters";
  const JsonNode name = node.require(key, kExpected);
  std::string text = name.text(kExpected);
  const auto isAscii = [](char c) { return static_cast<unsigned char>(c) < 0x80; };
  if (text.size() != kNameLength || !std::all_of(text.begin(), text.end(), isAscii)) {
    name.fail(kExpected);
  }
  return text;
}

bool flagOr(const JsonNode& node, const std::string& key, bool otherwise) {
  const auto flag = node.find(key);
  return flag ? flag->boolean() : otherwise;
}

SmcKey readSmcKey(const JsonNode& node) {
  node.expectKeys({"key", "type", "size", "bytes", "indexFails", "infoFails"});
  SmcKey key;
  key.key = readFourCharacters(node, "key");
  key.type = readFourCharacters(node, "type");
  if (const auto size = node.find("size")) key.size = size->unsigned32();
  if (const auto bytes = node.find("bytes")) key.bytes = readSmcBytes(*bytes);
  key.indexFails = flagOr(node, "indexFails", false);
  key.infoFails = flagOr(node, "infoFails", false);
  return key;
}

HidReading readHidReading(const JsonNode& node) {
  node.expectKeys({"LocationID", "value"});
  HidReading reading;
  if (const auto location = node.find("LocationID")) {
    const json& value = location->value();
    const bool fits = value.is_number_integer() &&
                      (!value.is_number_unsigned() || value.get<std::uint64_t>() <= INT64_MAX);
    if (fits) reading.locationID = value.get<std::int64_t>();
  }
  if (const auto value = node.find("value"); value && !value->isNull()) {
    reading.value = value->number();
  }
  return reading;
}

/// Any JSON value but null as the value of a registry property. Members that are null are left out.
/// The document is at most 64 levels deep, and so is this recursion.
base::PropertyList toPropertyList(const json& value) {
  switch (value.type()) {
    case json::value_t::object: {
      base::PropertyListDictionary dictionary;
      for (const auto& [key, member] : value.items()) {
        if (!member.is_null()) dictionary.emplace_back(key, toPropertyList(member));
      }
      return base::PropertyList(std::move(dictionary));
    }
    case json::value_t::array: {
      base::PropertyListArray array;
      for (const json& element : value) {
        if (!element.is_null()) array.push_back(toPropertyList(element));
      }
      return base::PropertyList(std::move(array));
    }
    case json::value_t::string:
      return base::PropertyList(value.get<std::string>());
    case json::value_t::boolean:
      return base::PropertyList(value.get<bool>());
    case json::value_t::number_unsigned:
      return base::PropertyList(value.get<std::uint64_t>());
    case json::value_t::number_integer:
      return base::PropertyList(value.get<std::int64_t>());
    default:
      return base::PropertyList(value.get<double>());
  }
}

std::optional<base::PropertyList> readProperty(const JsonNode& node, const std::string& key) {
  const auto found = node.find(key);
  if (!found || found->isNull()) return std::nullopt;
  return toPropertyList(found->value());
}

std::optional<base::PropertyList> readVendorId(const JsonNode& node) {
  const auto found = node.find("vendor-id");
  if (!found || !found->value().is_string()) return readProperty(node, "vendor-id");
  auto bytes = decodeHex(found->text());
  if (!bytes) found->fail("bytes in hex");
  return base::PropertyList(std::move(*bytes));
}

std::uint32_t readFailuresOf(const JsonNode& node) {
  const json& value = node.value();
  if (!value.is_number_unsigned() || value.get<std::uint64_t>() > kMostReadFailures) {
    node.fail("a whole number from 0 to " + std::to_string(kMostReadFailures));
  }
  return value.get<std::uint32_t>();
}

RecordedAccelerator readAccelerator(const JsonNode& node) {
  node.expectKeys({"vendor-id", "model", "PerformanceStatistics", "readFailures"});
  RecordedAccelerator accelerator;
  accelerator.vendorId = readVendorId(node);
  accelerator.model = readProperty(node, "model");
  accelerator.performanceStatistics = readProperty(node, "PerformanceStatistics");
  if (const auto failures = node.find("readFailures")) {
    accelerator.readFailures = readFailuresOf(*failures);
  }
  return accelerator;
}

ports::ProcessorTickCounts readCounts(const JsonNode& node) {
  constexpr const char* kExpected = "four unsigned 32-bit numbers";
  const auto numbers = node.elements(kExpected);
  ports::ProcessorTickCounts counts{};
  if (numbers.size() != counts.size()) node.fail(kExpected, numberWord(numbers.size()));
  std::transform(numbers.begin(), numbers.end(), counts.begin(),
                 [](const JsonNode& number) { return number.unsigned32(); });
  return counts;
}

template <typename Value>
std::vector<Value> readEach(const JsonNode& node, const char* expected,
                            Value (*read)(const JsonNode&)) {
  std::vector<Value> values;
  for (const JsonNode& element : node.elements(expected)) values.push_back(read(element));
  return values;
}

}  // namespace

RecordedSmc readSmc(const JsonNode& node) {
  node.expectKeys({"available", "keyCount", "keys"});
  RecordedSmc smc;
  smc.isAvailable = flagOr(node, "available", true);
  if (const auto keys = node.find("keys")) smc.keys = readEach(*keys, "an array", readSmcKey);
  const auto count = node.find("keyCount");
  if (!count) {
    smc.keyCount = static_cast<std::uint32_t>(smc.keys.size());
  } else if (count->isNull()) {
    smc.keyCount.reset();
  } else {
    smc.keyCount = count->unsigned32();
  }
  return smc;
}

std::map<std::string, SmcBytes> readSmcChanges(const JsonNode& node,
                                               const std::set<std::string>& listed) {
  std::map<std::string, SmcBytes> changes;
  for (const auto& [name, bytes] : node.members()) {
    if (listed.count(name) == 0) bytes.fail("the name of a key in smc.keys", "an unknown key");
    changes.emplace(name, readSmcBytes(bytes));
  }
  return changes;
}

std::vector<HidReading> readHid(const JsonNode& node) {
  return readEach(node, "an array or null", readHidReading);
}

std::vector<ports::ProcessorTickCounts> readTicks(const JsonNode& node) {
  return readEach(node, "an array or null", readCounts);
}

std::vector<RecordedAccelerator> readAccelerators(const JsonNode& node) {
  return readEach(node, "an array or null", readAccelerator);
}

}  // namespace pallimo::adapters::simulated
