// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "adapters/simulated/recordings/recording.h"
#include "adapters/simulated/text/json_node.h"

namespace pallimo::adapters::simulated {

// The sensors' part of a recording: each function reads one value of the document, checks all of
// it and throws JsonMismatch (json_node.h) at the first thing that is not as expected.

/// The recording's "smc".
RecordedSmc readSmc(const JsonNode& node);
/// A step's "smc": new bytes for keys of `listed`, the names in the recording's "smc". Any other
/// name is an unknown key.
std::map<std::string, SmcBytes> readSmcChanges(const JsonNode& node,
                                               const std::set<std::string>& listed);
/// A step's "hid", which is not null.
std::vector<HidReading> readHid(const JsonNode& node);
/// A step's "ticks", which is not null.
std::vector<ports::ProcessorTickCounts> readTicks(const JsonNode& node);
/// A step's "accelerators", which is not null.
std::vector<RecordedAccelerator> readAccelerators(const JsonNode& node);

}  // namespace pallimo::adapters::simulated
