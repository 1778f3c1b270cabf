// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstdint>
#include <initializer_list>
#include <nlohmann/json.hpp>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace pallimo::adapters::simulated {

/// A JSON document is not what its reader expects. Thrown by this folder's strict readers and
/// caught by the function that began the reading; never leaves the folder.
///
/// what() is one line: `steps[2].ticks[0]: expected four unsigned 32-bit numbers, got three`.
class JsonMismatch : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// A value and where it stands in its document. Each check throws JsonMismatch when it fails.
/// Refers to the document: the document outlives its nodes.
class JsonNode {
 public:
  /// `path` is empty for the whole document.
  explicit JsonNode(const nlohmann::json& value, std::string path = {});

  const nlohmann::json& value() const { return value_; }
  bool isNull() const { return value_.is_null(); }

  std::string text(std::string_view expected = "a text") const;
  bool boolean() const;
  double number() const;
  std::uint32_t unsigned32() const;

  /// The elements of an array.
  std::vector<JsonNode> elements(std::string_view expected = "an array") const;
  /// The members of an object, in the order of their keys.
  std::vector<std::pair<std::string, JsonNode>> members() const;

  /// The value is an object without other keys than these.
  void expectKeys(std::initializer_list<std::string_view> known) const;
  /// The object's "format" is the integer 1, the version that this program reads.
  void expectFormatOne() const;
  /// The member of an object; nothing when it is absent.
  std::optional<JsonNode> find(const std::string& key) const;
  /// The member of an object; its absence fails.
  JsonNode require(const std::string& key, std::string_view expected) const;

  /// Fails with "expected <expected>, got <the value, described>".
  [[noreturn]] void fail(std::string_view expected) const;
  /// The same with the caller's own words for what was found.
  [[noreturn]] void fail(std::string_view expected, std::string_view got) const;

 private:
  const nlohmann::json& value_;
  std::string path_;
};

/// `path` with a key or an index appended: `smc.keys[0]`, `sysctl["hw.model"]`.
std::string pathOfMember(const std::string& path, const std::string& key);
std::string pathOfElement(const std::string& path, std::size_t index);

/// "three" for 3; digits from eleven on.
std::string numberWord(std::size_t number);

/// The whole text in JSON's escapes, without quotes: always one line. For paths, whose end matters.
std::string oneLine(const std::string& text);

/// The text in JSON's quotes and escapes, cut when it is long: always one line.
std::string quotedText(const std::string& text);

}  // namespace pallimo::adapters::simulated
