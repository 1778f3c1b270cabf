// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/simulated/text/strict_json.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "adapters/simulated/text/json_node.h"
#include "base/text_format.h"

namespace pallimo::adapters::simulated {

using nlohmann::json;

namespace {

constexpr std::size_t kDeepest = 64;
constexpr int kNumberOverflow = 406;  // the library's name for it

/// Builds the value from the parser's events. The library's own builder accepts repeated keys, and
/// the one that reports them to a callback takes quadratic time over long arrays.
class StrictBuilder final : public nlohmann::json_sax<json> {
 public:
  explicit StrictBuilder(std::string_view text) : text_(text) {}

  json takeRoot() { return std::move(root_); }

  bool null() override { return add(nullptr); }
  bool boolean(bool value) override { return add(value); }
  bool number_integer(number_integer_t value) override { return add(value); }
  bool number_unsigned(number_unsigned_t value) override { return add(value); }
  bool number_float(number_float_t value, const string_t&) override { return add(value); }
  bool string(string_t& value) override { return add(std::move(value)); }
  bool binary(binary_t&) override { return false; }  // JSON text has none

  bool start_object(std::size_t) override { return enter(json::object()); }
  bool start_array(std::size_t) override { return enter(json::array()); }
  bool end_object() override { return leave(); }
  bool end_array() override { return leave(); }

  bool key(string_t& name) override {
    Level& level = levels_.back();
    level.key = std::move(name);
    if (level.value->contains(level.key)) {
      throw JsonMismatch(path() + ": expected each key once, got it twice");
    }
    return true;
  }

  bool parse_error(std::size_t byte, const std::string&,
                   const nlohmann::detail::exception& error) override {
    const bool overflow = error.id == kNumberOverflow;
    throw JsonMismatch(place(byte) + (overflow ? ": expected numbers that fit a double, got more"
                                               : ": expected JSON, got something else"));
  }

 private:
  struct Level {
    json* value;  // stays where it is: only the innermost container grows
    std::string key;
  };

  json& insert(json value) {
    if (levels_.empty()) return root_ = std::move(value);
    Level& level = levels_.back();
    if (!level.value->is_array()) return (*level.value)[level.key] = std::move(value);
    return level.value->emplace_back(std::move(value));
  }
  bool add(json value) {
    insert(std::move(value));
    return true;
  }
  bool enter(json container) {
    if (levels_.size() >= kDeepest) {
      throw JsonMismatch(path() + ": expected at most 64 levels, got more");
    }
    json& inserted = insert(std::move(container));
    levels_.push_back({&inserted, {}});
    return true;
  }
  bool leave() {
    levels_.pop_back();
    return true;
  }

  /// Where the parser stands. Containers are inserted when they begin, so that the last element of
  /// an outer array is the one under way; the innermost array waits for its next.
  std::string path() const {
    std::string path;
    for (const Level& level : levels_) {
      const std::size_t inserted = &level == &levels_.back() ? 0 : 1;
      path = level.value->is_array() ? pathOfElement(path, level.value->size() - inserted)
                                     : pathOfMember(path, level.key);
    }
    return path;
  }

  /// The parser counts bytes from one and names the last it read.
  std::string place(std::size_t byte) const {
    const std::string_view before =
        text_.substr(0, std::min(byte > 0 ? byte - 1 : 0, text_.size()));
    const auto line = std::count(before.begin(), before.end(), '\n') + 1;
    const std::size_t lineEnd = before.rfind('\n');
    const std::size_t lineStart = lineEnd == std::string_view::npos ? 0 : lineEnd + 1;
    return "line " + std::to_string(line) + ", column " +
           std::to_string(before.size() - lineStart + 1);
  }

  const std::string_view text_;
  json root_;
  std::vector<Level> levels_;
};

}  // namespace

json parseStrictJson(std::string_view text) {
  const base::CLocaleScope scope;
  StrictBuilder builder(text);
  json::sax_parse(text.begin(), text.end(), &builder);
  return builder.takeRoot();
}

}  // namespace pallimo::adapters::simulated
