// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/simulated/recordings/recording_reader.h"

#include <algorithm>
#include <new>
#include <nlohmann/json.hpp>
#include <set>
#include <utility>

#include "adapters/simulated/recordings/recorded_sensors_reader.h"
#include "adapters/simulated/text/file_bytes.h"
#include "adapters/simulated/text/json_node.h"
#include "adapters/simulated/text/strict_json.h"

namespace pallimo::adapters::simulated {

namespace {

constexpr const char* kMachineFile = "machine.json";
constexpr std::size_t kLargestMachineFile = std::size_t{256} * 1024 * 1024;

using WhyUnreadable = std::function<std::string(const std::string& file)>;

/// A relative path that cannot lead out of its folder.
bool staysInFolder(const std::string& file) {
  if (file.empty() || file.front() == '/' || file.find('\0') != file.npos) return false;
  std::size_t start = 0;
  while (start <= file.size()) {
    const std::size_t end = std::min(file.find('/', start), file.size());
    if (file.compare(start, end - start, "..") == 0) return false;
    start = end + 1;
  }
  return true;
}

std::string readFileName(const JsonNode& node, const WhyUnreadable& whyUnreadable) {
  constexpr const char* kExpected = "the name of a file in the recording's folder";
  std::string file = node.text(kExpected);
  if (!staysInFolder(file)) node.fail(kExpected);
  if (const std::string why = whyUnreadable(file); !why.empty()) {
    node.fail("a readable file", quotedText(file) + ": " + why);
  }
  return file;
}

SystemControlValue readSystemControl(const JsonNode& node) {
  const nlohmann::json& value = node.value();
  if (value.is_string()) return value.get<std::string>();
  const bool fits = value.is_number_integer() &&
                    (!value.is_number_unsigned() || value.get<std::uint64_t>() <= INT64_MAX);
  if (!fits) node.fail("a text or a signed 64-bit integer");
  return value.get<std::int64_t>();
}

SystemControlValues readSystemControls(const JsonNode& node) {
  SystemControlValues values;
  for (const auto& [name, control] : node.members()) {
    values.emplace(name, readSystemControl(control));
  }
  return values;
}

std::map<std::string, std::string> readReports(const JsonNode& node,
                                               const WhyUnreadable& whyUnreadable) {
  std::map<std::string, std::string> files;
  for (const auto& [dataType, file] : node.members()) {
    files.emplace(dataType, readFileName(file, whyUnreadable));
  }
  return files;
}

RecordingStep readStep(const JsonNode& node, const std::set<std::string>& smcKeys,
                       const WhyUnreadable& whyUnreadable) {
  node.expectKeys({"powermetrics", "smc", "hid", "ticks", "accelerators"});
  RecordingStep step;
  if (const auto file = node.find("powermetrics"); file && !file->isNull()) {
    step.powermetrics = readFileName(*file, whyUnreadable);
  }
  if (const auto changes = node.find("smc")) step.smc = readSmcChanges(*changes, smcKeys);
  if (const auto hid = node.find("hid"); hid && !hid->isNull()) step.hid = readHid(*hid);
  if (const auto ticks = node.find("ticks"); ticks && !ticks->isNull()) {
    step.ticks = readTicks(*ticks);
  }
  if (const auto entries = node.find("accelerators"); entries && !entries->isNull()) {
    step.accelerators = readAccelerators(*entries);
  }
  return step;
}

Recording readMachine(const JsonNode& root, const WhyUnreadable& whyUnreadable) {
  root.expectKeys({"format", "name", "sysctl", "system_profiler", "smc", "steps"});
  root.expectFormatOne();
  Recording recording;
  recording.name = root.require("name", "a text").text();
  recording.sysctl = readSystemControls(root.require("sysctl", "an object"));
  if (const auto reports = root.find("system_profiler")) {
    recording.systemProfiler = readReports(*reports, whyUnreadable);
  }
  if (const auto smc = root.find("smc")) recording.smc = readSmc(*smc);
  std::set<std::string> smcKeys;
  for (const SmcKey& key : recording.smc.keys) smcKeys.insert(key.key);
  const JsonNode steps = root.require("steps", "an array of at least one step");
  for (const JsonNode& step : steps.elements("an array of at least one step")) {
    recording.steps.push_back(readStep(step, smcKeys, whyUnreadable));
  }
  if (recording.steps.empty()) steps.fail("an array of at least one step");
  return recording;
}

RecordingError errorIn(const std::string& file, const std::string& what) {
  return {file + ": " + what};
}

}  // namespace

std::variant<Recording, RecordingError> parseRecording(
    std::string_view machineJson, const std::string& folder,
    const std::function<std::string(const std::string& file)>& whyUnreadable) {
  try {
    const nlohmann::json document = parseStrictJson(machineJson);
    Recording recording = readMachine(JsonNode(document), whyUnreadable);
    recording.folder = folder;
    return recording;
  } catch (const JsonMismatch& mismatch) {
    return errorIn(kMachineFile, mismatch.what());
  } catch (const std::bad_alloc&) {
    return errorIn(kMachineFile, "expected a smaller file, got one that does not fit memory");
  }
}

std::variant<Recording, RecordingError> readRecording(const std::string& folder) {
  const auto read = readFileBytes(folder + "/" + kMachineFile, kLargestMachineFile);
  if (const auto* error = std::get_if<FileError>(&read)) {
    return errorIn(kMachineFile, "expected a readable file, got: " + error->message);
  }
  const auto& bytes = std::get<base::Bytes>(read);
  const std::string text(bytes.begin(), bytes.end());
  return parseRecording(text, folder, [&folder](const std::string& file) {
    return whyUnreadable(folder + "/" + file, kLargestRecordedFile);
  });
}

}  // namespace pallimo::adapters::simulated
