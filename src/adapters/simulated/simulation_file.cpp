// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/simulated/simulation_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <limits>
#include <nlohmann/json.hpp>
#include <optional>

#include "adapters/simulated/text/file_bytes.h"
#include "adapters/simulated/text/json_node.h"
#include "adapters/simulated/text/strict_json.h"

namespace pallimo::adapters::simulated {

namespace {

constexpr std::size_t kLargestFile = 65536;
constexpr double kLatestStart = 1e11;  // the year 5138

std::string textOr(const JsonNode& node, const std::string& key, const std::string& otherwise) {
  const auto found = node.find(key);
  return found ? found->text() : otherwise;
}

std::uint64_t readSeed(const JsonNode& node) {
  if (!node.value().is_number_unsigned()) node.fail("an unsigned 64-bit number");
  return node.value().get<std::uint64_t>();
}

double readWithin(const JsonNode& node, double lowest, double highest, const char* expected) {
  const double number = node.number();
  if (!(number >= lowest && number <= highest)) node.fail(expected);
  return number;
}

bool isPlanned(const JsonNode& node, const std::string& key) {
  const auto found = node.find(key);
  return found && found->boolean();
}

std::int32_t readStatus(const JsonNode& node) {
  constexpr const char* kExpected = "a signed 32-bit number";
  if (!node.value().is_number_integer()) node.fail(kExpected);
  constexpr double kLowest = std::numeric_limits<std::int32_t>::min();
  constexpr double kHighest = std::numeric_limits<std::int32_t>::max();
  return static_cast<std::int32_t>(readWithin(node, kLowest, kHighest, kExpected));
}

std::uint32_t readRequestNumber(const JsonNode& node) {
  const std::uint32_t number = node.unsigned32();
  if (number == 0) node.fail("a number from 1");
  return number;
}

Faults readFaults(const JsonNode& node) {
  node.expectKeys({"authorizationStatus", "blessRefused", "helperSilent", "helperAnswersNo",
                   "helperVersion", "helperDiesOnRequest"});
  Faults faults;
  if (const auto status = node.find("authorizationStatus")) {
    faults.authorizationStatus = readStatus(*status);
  }
  faults.blessRefused = isPlanned(node, "blessRefused");
  faults.helperSilent = isPlanned(node, "helperSilent");
  faults.helperAnswersNo = isPlanned(node, "helperAnswersNo");
  if (const auto version = node.find("helperVersion")) faults.helperVersion = version->text();
  if (const auto request = node.find("helperDiesOnRequest")) {
    faults.helperDiesOnRequest = readRequestNumber(*request);
  }
  return faults;
}

nlohmann::ordered_json formatFaults(const Faults& faults) {
  nlohmann::ordered_json node;
  if (faults.authorizationStatus) node["authorizationStatus"] = *faults.authorizationStatus;
  if (faults.blessRefused) node["blessRefused"] = true;
  if (faults.helperSilent) node["helperSilent"] = true;
  if (faults.helperAnswersNo) node["helperAnswersNo"] = true;
  if (faults.helperVersion) node["helperVersion"] = *faults.helperVersion;
  if (faults.helperDiesOnRequest) node["helperDiesOnRequest"] = *faults.helperDiesOnRequest;
  return node;
}

Simulation readSimulationNode(const JsonNode& root) {
  root.expectKeys({"format", "machine", "recording", "seed", "speed", "startTime", "faults"});
  root.expectFormatOne();
  Simulation simulation;
  simulation.machine = textOr(root, "machine", "");
  simulation.recording = textOr(root, "recording", "");
  if (simulation.machine.empty() == simulation.recording.empty()) {
    throw JsonMismatch("expected either a machine or a recording, got " +
                       std::string(simulation.machine.empty() ? "none" : "both"));
  }
  const auto recording = root.find("recording");
  if (recording && !simulation.recording.empty() && simulation.recording.front() != '/') {
    recording->fail("an absolute path");
  }
  if (const auto seed = root.find("seed")) simulation.seed = readSeed(*seed);
  if (const auto speed = root.find("speed")) {
    simulation.speed = readWithin(*speed, 1, 100, "a number from 1 to 100");
  }
  if (const auto start = root.find("startTime")) {
    simulation.startTime = readWithin(*start, 0, kLatestStart, "seconds since 1970");
  }
  if (const auto faults = root.find("faults")) simulation.faults = readFaults(*faults);
  return simulation;
}

/// Keeps others who write in the folder of `path` waiting; they hold it for one small file.
class FolderLock {
 public:
  explicit FolderLock(const std::string& path)
      : descriptor_(open(folderOf(path).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
    while (descriptor_ >= 0 && flock(descriptor_, LOCK_EX) != 0 && errno == EINTR) {
    }
  }
  ~FolderLock() {
    if (descriptor_ < 0) return;
    // Closing alone would leave the lock with a child that has not reached its exec.
    flock(descriptor_, LOCK_UN);
    close(descriptor_);
  }
  FolderLock(const FolderLock&) = delete;
  FolderLock& operator=(const FolderLock&) = delete;

 private:
  static std::string folderOf(const std::string& path) {
    return path.substr(0, path.find_last_of('/') + 1) + ".";
  }

  const int descriptor_;
};

/// A new file beside the one it will replace; gone again unless it was renamed. Its name is always
/// the same, so that what a killed writer leaves is removed by the next one.
class TemporaryFile {
 public:
  explicit TemporaryFile(const std::string& target)
      : lock_(target), path_(target + ".new"), descriptor_(make(path_)) {}
  ~TemporaryFile() {
    if (descriptor_ < 0) return;
    close(descriptor_);
    if (!isRenamed_) unlink(path_.c_str());
  }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  bool replaceTarget(const std::string& target, const std::string& text) {
    if (descriptor_ < 0 || fchmod(descriptor_, S_IRUSR | S_IWUSR) != 0 || !write(text)) {
      return false;
    }
    isRenamed_ = rename(path_.c_str(), target.c_str()) == 0;
    return isRenamed_;
  }

 private:
  static int make(const std::string& path) {
    unlink(path.c_str());
    return open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                S_IRUSR | S_IWUSR);
  }

  bool write(const std::string& text) const {
    std::size_t written = 0;
    while (written < text.size()) {
      const ssize_t now = ::write(descriptor_, text.data() + written, text.size() - written);
      if (now < 0 && errno != EINTR) return false;
      if (now > 0) written += static_cast<std::size_t>(now);
    }
    return true;
  }

  const FolderLock lock_;
  const std::string path_;
  const int descriptor_;
  bool isRenamed_ = false;
};

/// The file's text, or what keeps it from being read.
std::variant<std::string, SimulationError> readText(const std::string& path) {
  const auto bytes = readFileBytes(path, kLargestFile);
  if (const auto* error = std::get_if<FileError>(&bytes)) {
    return SimulationError{path + ": expected a readable file, got: " + error->message};
  }
  const auto& read = std::get<base::Bytes>(bytes);
  return std::string(read.begin(), read.end());
}

Faults faultsOf(const std::variant<Simulation, SimulationError>& read) {
  const auto* simulation = std::get_if<Simulation>(&read);
  return simulation == nullptr ? Faults() : simulation->faults;
}

/// What keeps the faults of a text from being read; nothing when they are fine or none are meant.
std::optional<SimulationError> complaintAboutFaults(const std::string& text) {
  if (text.find("\"faults\"") == std::string::npos) return std::nullopt;
  try {
    const nlohmann::json document = parseStrictJson(text);
    if (!document.is_object()) return std::nullopt;
    if (const auto faults = JsonNode(document).find("faults")) readFaults(*faults);
  } catch (const JsonMismatch& mismatch) {
    return SimulationError{mismatch.what()};
  }
  return std::nullopt;
}

}  // namespace

std::string formatSimulation(const Simulation& simulation) {
  nlohmann::ordered_json file;
  file["format"] = 1;
  if (!simulation.machine.empty()) file["machine"] = simulation.machine;
  if (!simulation.recording.empty()) file["recording"] = simulation.recording;
  file["seed"] = simulation.seed;
  file["speed"] = simulation.speed;
  file["startTime"] = simulation.startTime;
  if (simulation.faults != Faults()) file["faults"] = formatFaults(simulation.faults);
  // A path need not be UTF-8; what can't be written as JSON becomes U+FFFD instead of an exception.
  return file.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n";
}

std::variant<Simulation, SimulationError> parseSimulation(const std::string& text) {
  try {
    const nlohmann::json document = parseStrictJson(text);
    return readSimulationNode(JsonNode(document));
  } catch (const JsonMismatch& mismatch) {
    return SimulationError{mismatch.what()};
  }
}

std::variant<Simulation, SimulationError> readSimulation(const std::string& path) {
  const auto text = readText(path);
  if (const auto* error = std::get_if<SimulationError>(&text)) return *error;
  auto parsed = parseSimulation(std::get<std::string>(text));
  if (auto* error = std::get_if<SimulationError>(&parsed)) {
    error->message = path + ": " + error->message;
  }
  return parsed;
}

Faults plannedFaults(const std::string& path) { return faultsOf(readSimulation(path)); }

std::variant<Faults, SimulationError> keptFaults(const std::string& path) {
  const auto text = readText(path);
  const auto* written = std::get_if<std::string>(&text);
  if (written == nullptr) return Faults();
  if (const auto complaint = complaintAboutFaults(*written)) {
    return SimulationError{path + ": " + complaint->message};
  }
  return faultsOf(parseSimulation(*written));
}

std::string writeSimulation(const std::string& path, const Simulation& simulation) {
  TemporaryFile file(path);
  if (file.replaceTarget(path, formatSimulation(simulation))) return "";
  return "can't write \"" + path + "\": " + std::strerror(errno);
}

}  // namespace pallimo::adapters::simulated
