// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

// Any bytes as what the system profiler prints, and as what the I/O registry says of the graphics
// accelerators. The number of cores is the one that stands in the report, or unknown; the GPU is
// the first of Apple's that tells figures; no handle is lost or used twice.

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "adapters/libplist/libplist_reader.h"
#include "fuzz/require.h"
#include "sensors/sg_system_gpu_info.h"
#include "sensors/sg_system_profiler.h"

namespace {

using namespace pallimo::sensors;
using pallimo::adapters::libplist::LibplistReader;
using pallimo::base::Bytes;
using pallimo::base::PropertyList;
using pallimo::base::PropertyListArray;
using pallimo::fuzz::require;

class Profiler final : public pallimo::ports::ProgramLauncher {
 public:
  explicit Profiler(Bytes output) : output_(std::move(output)) {}

  std::optional<Bytes> run(const std::string& path,
                           const std::vector<std::string>& arguments) override {
    require(path == "/usr/sbin/system_profiler");
    require(arguments == std::vector<std::string>({"-xml", "SPDisplaysDataType"}));
    return output_;
  }

 private:
  const Bytes output_;
};

/// Entries that answer at their second reading.
class Registry final : public pallimo::ports::AcceleratorRegistry {
 public:
  explicit Registry(PropertyListArray entries) : entries_(std::move(entries)) {}
  ~Registry() override { require(held_.empty()); }
  Registry(const Registry&) = delete;
  Registry& operator=(const Registry&) = delete;

  std::optional<std::uint32_t> matchingServices(std::string_view className) override {
    require(className == "IOAccelerator");
    next_ = 0;
    return hold(kIterator);
  }
  std::uint32_t next(std::uint32_t iterator) override {
    require(iterator == kIterator && held_.contains(kIterator));
    if (next_ == entries_.size()) return 0;
    hasFailed_ = false;
    return hold(static_cast<std::uint32_t>(++next_));
  }
  std::optional<PropertyList> properties(std::uint32_t entry) override {
    require(entry != kIterator && held_.contains(entry));
    if (!std::exchange(hasFailed_, true)) return std::nullopt;
    return entries_[entry - 1];
  }
  void release(std::uint32_t object) override { require(held_.erase(object) == 1); }

 private:
  static constexpr std::uint32_t kIterator = 0xFFFFFFFF;

  std::uint32_t hold(std::uint32_t object) {
    require(held_.insert(object).second);
    return object;
  }

  const PropertyListArray entries_;
  std::size_t next_ = 0;
  bool hasFailed_ = false;
  std::set<std::uint32_t> held_;
};

const std::string* textUnder(const PropertyList& dictionary, std::string_view key) {
  const PropertyList* value = dictionary.find(key);
  return value == nullptr ? nullptr : value->text();
}

/// Of two ways to write a number the plain one: without a plus and leading zeros.
std::string plainNumber(std::string text) {
  if (text.starts_with('+')) text.erase(0, 1);
  const bool isNegative = text.starts_with('-');
  if (isNegative) text.erase(0, 1);
  while (text.size() > 1 && text.front() == '0') text.erase(0, 1);
  return isNegative && text != "0" ? "-" + text : text;
}

void checkProfiler(std::span<const std::uint8_t> bytes) {
  Profiler launcher(Bytes(bytes.begin(), bytes.end()));
  const LibplistReader reader;
  const SGSystemProfiler profiler(launcher, reader);
  const std::int64_t cores = profiler.gpuCoreCount();
  const auto item = profiler.profilerItem("SPDisplaysDataType");
  if (!item) return require(cores == -1);
  require(item->dictionary() != nullptr);
  const std::string* text = textUnder(*item, "sppci_cores");
  if (cores != -1) {
    require(text != nullptr && plainNumber(*text) == std::to_string(cores));
  } else if (text != nullptr && !text->empty() && text->size() < 19) {
    // Unknown, although it is there: then it is no number, or says that it is unknown.
    const bool isNumber = text->find_first_not_of("0123456789") == std::string::npos;
    require(!isNumber);
  }
}

bool isApples(const PropertyList& entry) {
  const PropertyList* vendor = entry.find("vendor-id");
  const Bytes* bytes = vendor == nullptr ? nullptr : vendor->data();
  return bytes != nullptr && *bytes == Bytes({0x6B, 0x10, 0, 0});
}

void checkRecord(const GPUInfoRecord& record, const PropertyList& entry) {
  const std::string* model = textUnder(entry, "model");
  require(record.name == (model == nullptr ? "Unknown" : *model));
  const PropertyList* percent = entry.find("PerformanceStatistics")->find("Device Utilization %");
  require(record.isUtilisationTold == (percent != nullptr && percent->isNumber()));
  if (!record.isUtilisationTold) return require(record.utilisation == 0);
  const double expected = percent->numberOr(0) / 100;
  require(record.utilisation == expected ||
          (std::isnan(record.utilisation) && std::isnan(expected)));
}

void checkRegistry(const PropertyList& value) {
  const PropertyListArray entries =
      value.array() == nullptr ? PropertyListArray{value} : *value.array();
  const PropertyList* first = nullptr;
  for (const PropertyList& entry : entries) {
    const PropertyList* statistics = entry.find("PerformanceStatistics");
    const bool tells = statistics != nullptr && statistics->dictionary() != nullptr;
    if (first == nullptr && isApples(entry) && tells) first = &entry;
  }
  Registry registry(entries);
  const auto record = SGSystemGPUInfo(registry).readGPUInfo();
  require(record.has_value() == (first != nullptr));
  if (record) checkRecord(*record, *first);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::span<const std::uint8_t> bytes(data, size);
  checkProfiler(bytes);
  if (const auto value = LibplistReader().read(bytes)) checkRegistry(*value);
  return 0;
}
