// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <variant>

#include "adapters/simulated/recordings/recording.h"

namespace pallimo::adapters::simulated {

/// One line that says what is wrong with a recording, naming the file, the key and what was
/// expected: `machine.json: steps[2].ticks[0]: expected four unsigned 32-bit numbers, got three`.
struct RecordingError {
  std::string message;
};

/// The recording in `folder`, format version 1. Everything is checked, also that the files it names
/// lie in the folder, can be read and are no larger than kLargestRecordedFile; the files' contents
/// are not: they are given verbatim.
/// Unknown and repeated keys are errors at every level, except inside "PerformanceStatistics",
/// whose entries are the driver's, and where the names themselves are data. Never throws.
std::variant<Recording, RecordingError> readRecording(const std::string& folder);

/// The same from the text of a machine.json. `whyUnreadable` is asked for every file that it names
/// (a path within the folder) and answers nothing when the file can be read.
std::variant<Recording, RecordingError> parseRecording(
    std::string_view machineJson, const std::string& folder,
    const std::function<std::string(const std::string& file)>& whyUnreadable);

}  // namespace pallimo::adapters::simulated
