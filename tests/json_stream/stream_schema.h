// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <memory>
#include <nlohmann/json.hpp>
#include <string>

namespace pallimo::json_stream {

/// The published schema of the JSON stream, as a reader of the stream would use it. Compiled once:
/// the validator behind it takes longer than most tests.
class StreamSchema {
 public:
  StreamSchema();
  ~StreamSchema();

  const nlohmann::ordered_json& document() const { return document_; }

  /// What is wrong with a line of the stream; nothing when the schema accepts it.
  std::string complaintAbout(const std::string& line);

 private:
  struct Rules;

  const nlohmann::ordered_json document_;
  const std::unique_ptr<Rules> rules_;
};

}  // namespace pallimo::json_stream
