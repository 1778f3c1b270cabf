// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <fstream>
#include <nlohmann/json.hpp>
#include <string>
#include <valijson/adapters/nlohmann_json_adapter.hpp>
#include <valijson/schema.hpp>
#include <valijson/schema_parser.hpp>
#include <valijson/validator.hpp>

namespace pallimo::scenarios {

/// The published schema of the JSON stream, as a reader of the stream would use it.
class StreamSchema {
 public:
  StreamSchema() {
    document_ = nlohmann::ordered_json::parse(
        std::ifstream(PALLIMO_SOURCE_DIR "/docs/json-stream.schema.json"));
    const nlohmann::json plain = document_;
    valijson::SchemaParser parser(valijson::SchemaParser::kDraft7);
    parser.populateSchema(Adapter(plain), schema_);
  }

  const nlohmann::ordered_json& document() const { return document_; }

  /// What is wrong with a line of the stream; nothing when the schema accepts it.
  std::string complaintAbout(const std::string& line) {
    const auto object = nlohmann::json::parse(line, nullptr, false);
    if (object.is_discarded()) return "no JSON";
    valijson::ValidationResults results;
    valijson::Validator validator;
    if (validator.validate(schema_, Adapter(object), &results)) return "";
    std::string complaint;
    for (valijson::ValidationResults::Error error; results.popError(error);) {
      complaint += error.description + "\n";
    }
    return complaint;
  }

 private:
  using Adapter = valijson::adapters::NlohmannJsonAdapter;

  nlohmann::ordered_json document_;
  valijson::Schema schema_;
};

}  // namespace pallimo::scenarios
