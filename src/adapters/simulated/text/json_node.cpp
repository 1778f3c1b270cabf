// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/simulated/text/json_node.h"

#include <algorithm>
#include <array>
#include <limits>

namespace pallimo::adapters::simulated {

using nlohmann::json;

namespace {

constexpr std::size_t kLongestQuote = 60;

bool isPlainKey(const std::string& key) {
  return !key.empty() && key.size() <= kLongestQuote &&
         std::all_of(key.begin(), key.end(), [](char c) {
           return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
                  c == '_' || c == '-';
         });
}

std::string inQuotes(const std::string& text) {
  return json(text).dump(-1, ' ', false, json::error_handler_t::replace);
}

std::string describe(const json& value) {
  switch (value.type()) {
    case json::value_t::string:
      return quotedText(value.get_ref<const std::string&>());
    case json::value_t::object:
      return "an object";
    case json::value_t::array:
      return value.empty() ? "an empty array" : "an array";
    default:
      return value.dump();
  }
}

}  // namespace

std::string oneLine(const std::string& text) {
  const std::string quoted = inQuotes(text);
  return quoted.substr(1, quoted.size() - 2);
}

std::string quotedText(const std::string& text) {
  std::size_t length = std::min(text.size(), kLongestQuote);
  // Never in the middle of a UTF-8 character.
  while (length > 0 && length < text.size() && (text[length] & 0xC0) == 0x80) --length;
  return inQuotes(length < text.size() ? text.substr(0, length) + "..." : text);
}

std::string numberWord(std::size_t number) {
  constexpr std::array kWords{"none", "one",   "two",   "three", "four", "five",
                              "six",  "seven", "eight", "nine",  "ten"};
  return number < kWords.size() ? kWords[number] : std::to_string(number);
}

std::string pathOfMember(const std::string& path, const std::string& key) {
  if (!isPlainKey(key)) return path + "[" + quotedText(key) + "]";
  return path.empty() ? key : path + "." + key;
}

std::string pathOfElement(const std::string& path, std::size_t index) {
  return path + "[" + std::to_string(index) + "]";
}

JsonNode::JsonNode(const json& value, std::string path) : value_(value), path_(std::move(path)) {}

std::string JsonNode::text(std::string_view expected) const {
  if (!value_.is_string()) fail(expected);
  return value_.get<std::string>();
}

bool JsonNode::boolean() const {
  if (!value_.is_boolean()) fail("true or false");
  return value_.get<bool>();
}

double JsonNode::number() const {
  if (!value_.is_number()) fail("a number");
  return value_.get<double>();
}

std::uint32_t JsonNode::unsigned32() const {
  // A parsed integer is unsigned unless it carries a minus sign.
  if (!value_.is_number_unsigned() ||
      value_.get<std::uint64_t>() > std::numeric_limits<std::uint32_t>::max()) {
    fail("an unsigned 32-bit number");
  }
  return value_.get<std::uint32_t>();
}

std::vector<JsonNode> JsonNode::elements(std::string_view expected) const {
  if (!value_.is_array()) fail(expected);
  std::vector<JsonNode> nodes;
  nodes.reserve(value_.size());
  for (const json& element : value_) {
    nodes.emplace_back(element, pathOfElement(path_, nodes.size()));
  }
  return nodes;
}

std::vector<std::pair<std::string, JsonNode>> JsonNode::members() const {
  if (!value_.is_object()) fail("an object");
  std::vector<std::pair<std::string, JsonNode>> nodes;
  nodes.reserve(value_.size());
  for (const auto& [key, member] : value_.items()) {
    nodes.emplace_back(key, JsonNode(member, pathOfMember(path_, key)));
  }
  return nodes;
}

void JsonNode::expectKeys(std::initializer_list<std::string_view> known) const {
  for (const auto& [key, member] : members()) {
    if (std::find(known.begin(), known.end(), key) != known.end()) continue;
    std::string expected = "one of the keys";
    const char* separator = " ";
    for (const std::string_view name : known) {
      expected.append(separator).append(name);
      separator = ", ";
    }
    member.fail(expected, "an unknown key");
  }
}

void JsonNode::expectFormatOne() const {
  const JsonNode format = require("format", "1");
  if (!format.value().is_number_integer() || format.value() != 1) format.fail("1");
}

std::optional<JsonNode> JsonNode::find(const std::string& key) const {
  const auto found = value_.find(key);
  if (found == value_.end()) return std::nullopt;
  return JsonNode(*found, pathOfMember(path_, key));
}

JsonNode JsonNode::require(const std::string& key, std::string_view expected) const {
  if (const auto found = find(key)) return *found;
  JsonNode(value_, pathOfMember(path_, key)).fail(expected, "nothing");
}

void JsonNode::fail(std::string_view expected) const { fail(expected, describe(value_)); }

void JsonNode::fail(std::string_view expected, std::string_view got) const {
  std::string line = path_.empty() ? "" : path_ + ": ";
  line.append("expected ").append(expected).append(", got ").append(got);
  throw JsonMismatch(line);
}

}  // namespace pallimo::adapters::simulated
