// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "json_stream/stream_schema.h"

#include <fstream>
#include <valijson/adapters/nlohmann_json_adapter.hpp>
#include <valijson/schema.hpp>
#include <valijson/schema_parser.hpp>
#include <valijson/validator.hpp>

namespace pallimo::json_stream {

using Adapter = valijson::adapters::NlohmannJsonAdapter;

struct StreamSchema::Rules {
  valijson::Schema schema;
};

StreamSchema::StreamSchema()
    : document_(nlohmann::ordered_json::parse(
          std::ifstream(PALLIMO_SOURCE_DIR "/docs/json-stream.schema.json"))),
      rules_(std::make_unique<Rules>()) {
  const nlohmann::json plain = document_;
  valijson::SchemaParser parser(valijson::SchemaParser::kDraft7);
  parser.populateSchema(Adapter(plain), rules_->schema);
}

StreamSchema::~StreamSchema() = default;

std::string StreamSchema::complaintAbout(const std::string& line) {
  const auto object = nlohmann::json::parse(line, nullptr, false);
  if (object.is_discarded()) return "no JSON";
  valijson::ValidationResults results;
  valijson::Validator validator;
  if (validator.validate(rules_->schema, Adapter(object), &results)) return "";
  std::string complaint;
  for (valijson::ValidationResults::Error error; results.popError(error);) {
    complaint += error.description + "\n";
  }
  return complaint;
}

}  // namespace pallimo::json_stream
