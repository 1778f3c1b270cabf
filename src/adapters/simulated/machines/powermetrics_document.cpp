// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/simulated/machines/powermetrics_document.h"

#include <cmath>

#include "adapters/simulated/machines/load_curve.h"
#include "adapters/simulated/machines/load_model.h"
#include "adapters/simulated/machines/machine_past.h"
#include "adapters/simulated/text/plist_text.h"

namespace pallimo::adapters::simulated {

namespace {

constexpr double kHertzPerMegahertz = 1e6;
constexpr std::uint64_t kElapsedChannel = 8;  // beside the load's own channels

/// What the sections share.
struct Sample {
  const MachineDescription& machine;
  Load load;
  std::int64_t elapsed;  ///< ns

  std::int64_t nanoseconds(double share) const {
    return std::llround(share * static_cast<double>(elapsed));
  }
  double seconds() const { return static_cast<double>(elapsed) * 1e-9; }
  std::int64_t millijoules(double milliwatts) const { return std::llround(milliwatts * seconds()); }
};

/// The run takes a little longer than it was told to.
std::int64_t elapsedNanoseconds(const DocumentRequest& request) {
  const LoadCurve curve(request.seed);
  const double late = curve.chance(kElapsedChannel, std::llround(request.time * 1000));
  const auto period = std::chrono::duration<double, std::nano>(request.period).count();
  return std::llround(period * (1.001 + 0.019 * late));
}

void writeShare(PlistText& out, const Sample& sample, const char* nanoseconds, const char* ratio,
                double share) {
  out.integer(nanoseconds, sample.nanoseconds(share));
  out.real(ratio, share);
}

/// Frequency, idle time and frequency table of something that is busy for `active` of the time with
/// the clock of `load`; `unit` is what one megahertz of the table counts as in "freq_hz".
void writeUnit(PlistText& out, const Sample& sample, const UnitLoad& load, double active,
               const std::vector<int>& table, double unit) {
  out.real("freq_hz", load.frequency(table) * unit);
  writeShare(out, sample, "idle_ns", "idle_ratio", 1 - active);
  out.beginArray("dvfm_states");
  for (std::size_t i = 0; i < table.size(); ++i) {
    out.beginDictionary();
    out.integer("freq", table[i]);
    writeShare(out, sample, "used_ns", "used_ratio", active * load.shares[i]);
    out.endDictionary();
  }
  out.endArray();
}

void writeCluster(PlistText& out, const Sample& sample, const ClusterDescription& cluster,
                  const ClusterLoad& load, std::int64_t firstCpu) {
  out.beginDictionary();
  out.text("name", cluster.name);
  out.boolean("hw_resid_counters", true);
  writeUnit(out, sample, load.whole, load.whole.active, cluster.frequencies, kHertzPerMegahertz);
  out.real("online_ratio", 1);
  out.beginArray("cpus");
  for (std::size_t i = 0; i < load.cores.size(); ++i) {
    out.beginDictionary();
    out.integer("cpu", firstCpu + static_cast<std::int64_t>(i));
    writeUnit(out, sample, load.whole, load.cores[i], cluster.frequencies, kHertzPerMegahertz);
    out.endDictionary();
  }
  out.endArray();
  out.endDictionary();
}

void writeEnergy(PlistText& out, const Sample& sample, const std::string& name,
                 std::int64_t millijoules) {
  out.integer(name + "_energy", millijoules);
  out.real(name + "_power", static_cast<double>(millijoules) / sample.seconds());
}

void writeProcessor(PlistText& out, const Sample& sample) {
  out.beginDictionary("processor");
  out.beginArray("clusters");
  std::int64_t firstCpu = 0;
  for (std::size_t i = 0; i < sample.machine.clusters.size(); ++i) {
    const ClusterDescription& cluster = sample.machine.clusters[i];
    writeCluster(out, sample, cluster, sample.load.clusters[i], firstCpu);
    firstCpu += static_cast<std::int64_t>(cluster.cores);
  }
  out.endArray();
  const std::int64_t cpu = sample.millijoules(sample.load.cpuMilliwatts);
  const std::int64_t gpu = sample.millijoules(sample.load.gpuMilliwatts);
  const std::int64_t ane = sample.millijoules(sample.load.aneMilliwatts);
  writeEnergy(out, sample, "cpu", cpu);
  writeEnergy(out, sample, "gpu", gpu);
  writeEnergy(out, sample, "ane", ane);
  out.real("combined_power", static_cast<double>(cpu + gpu + ane) / sample.seconds());
  out.endDictionary();
}

/// The GPU's performance states by number: what the driver asked for (`share`: one a state).
void writeSoftwareStates(PlistText& out, const Sample& sample, const char* list, const char* key,
                         const std::string& prefix, const std::vector<double>& shares) {
  out.beginArray(list);
  for (std::size_t i = 0; i < shares.size(); ++i) {
    out.beginDictionary();
    out.text(key, prefix + std::to_string(i + 1));
    writeShare(out, sample, "used_ns", "used_ratio", shares[i]);
    out.endDictionary();
  }
  out.endArray();
}

void writeGpu(PlistText& out, const Sample& sample) {
  const UnitLoad& load = sample.load.gpu;
  const std::vector<int>& table = sample.machine.gpu.frequencies;
  std::vector<double> used = load.shares;
  for (double& share : used) share *= load.active;
  out.beginDictionary("gpu");
  writeUnit(out, sample, load, load.active, table, 1);
  writeSoftwareStates(out, sample, "sw_requested_state", "sw_req_state", "P", load.shares);
  writeSoftwareStates(out, sample, "sw_state", "sw_state", "SW_P", used);
  // The system's own tool repeats these two here; readers have to live with it.
  writeShare(out, sample, "idle_ns", "idle_ratio", 1 - load.active);
  out.integer("gpu_energy", sample.millijoules(sample.load.gpuMilliwatts));
  out.endDictionary();
}

void writeHeader(PlistText& out, const MachineDescription& machine, const DocumentRequest& request,
                 std::int64_t elapsed) {
  const std::int64_t start = std::llround(request.startTime);
  out.boolean("is_delta", true);
  out.integer("elapsed_ns", elapsed);
  out.text("hw_model", machine.model);
  out.text("kern_osversion", machine.osVersion);
  out.text("kern_bootargs", "");
  out.integer("kern_boottime", start - kUptimeAtStart);
  out.date("timestamp", static_cast<std::int64_t>(std::floor(request.startTime + request.time)));
}

}  // namespace

bool Samplers::enable(std::string_view name) {
  bool* sampler = name == "cpu_power"   ? &cpuPower
                  : name == "gpu_power" ? &gpuPower
                  : name == "ane_power" ? &anePower
                  : name == "thermal"   ? &thermal
                                        : nullptr;
  if (sampler != nullptr) *sampler = true;
  return sampler != nullptr;
}

base::Bytes powermetricsDocument(const MachineDescription& machine,
                                 const DocumentRequest& request) {
  // The load in the middle of the period stands for the whole of it.
  const double middle = request.time - std::chrono::duration<double>(request.period).count() / 2;
  const Sample sample{machine, loadAt(machine, request.seed, middle), elapsedNanoseconds(request)};
  PlistText out;
  writeHeader(out, machine, request, sample.elapsed);
  if (request.samplers.cpuPower) writeProcessor(out, sample);
  if (request.samplers.thermal) out.text("thermal_pressure", "Nominal");
  if (request.samplers.gpuPower) writeGpu(out, sample);
  const std::string text = out.take();
  return {text.begin(), text.end()};
}

}  // namespace pallimo::adapters::simulated
