// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "base/bytes.h"
#include "base/mutex.h"
#include "base/notification_centre.h"
#include "base/subscription.h"
#include "helper_link/delegates.h"
#include "helper_link/sampling_gate.h"
#include "ports/main_queue.h"
#include "ports/property_list_reader.h"
#include "ports/user_defaults.h"
#include "sampling/cluster.h"
#include "sampling/sample_reader.h"
#include "sampling/sample_steps.h"

namespace pallimo::sampling {

/// The sampling engine: asks the helper for a sample once a second and fans each result out to the
/// modules, the log and the views.
///
/// Nothing counts the requests under way: one goes out every second even while earlier ones are
/// unanswered, and each result is handled on its own. Nothing ends sampling but
/// setAuthorized(false) and stopTimer(). What is queued and timed holds the engine weakly.
///
/// Main thread: timer, requests and destruction. Delivery thread: handleResult() and all it calls.
/// setAuthorized() and the read operations: any thread. A change of the settings is followed on the
/// thread that makes it.
class SGPowerMetrics final : public helper_link::PowerMetricsModelDelegate,
                             public SampleReader,
                             public std::enable_shared_from_this<SGPowerMetrics> {
 public:
  /// What the engine uses; all of it outlives the engine.
  struct Services {
    ports::MainQueue& mainQueue;
    base::NotificationCentre& notifications;
    ports::UserDefaults& defaults;
    const ports::PropertyListReader& reader;
  };

  /// Who takes part in a sample; links that are gone are skipped.
  struct Fanout {
    std::weak_ptr<SampleConsumer> power;
    std::weak_ptr<SampleConsumer> utilization;
    std::weak_ptr<SampleConsumer> frequency;
    std::weak_ptr<SampleConsumer> temperature;
    std::weak_ptr<RowLog> log;
  };

  /// Reads the settings and follows them; does not sample yet.
  static std::shared_ptr<SGPowerMetrics> create(const Services& services);
  ~SGPowerMetrics() override;

  /// The helper manager, handed over when it exists; before sampling starts.
  void setGate(std::weak_ptr<helper_link::SamplingGate> gate);
  /// Before sampling starts.
  void setFanout(Fanout fanout);

  /// Setting "gpuFrequency": whether requests ask for GPU figures.
  bool includeGPU() const { return includeGPU_; }
  /// Setting "samplingResolution", milliseconds: 500 when it is absent or 0, never below 100.
  double msSampling() const override { return msSampling_; }
  /// Whether it samples: the last start, stop or stopTimer() that ran was a start.
  bool isAuthorized() const { return isAuthorized_; }
  /// How many results have come without bytes: runs that gave the helper nothing. Any thread.
  std::uint64_t emptyResults() const { return emptyResults_; }

  /// Queues the start or the stop on the main queue. A start is not even queued while the timer
  /// stands; a stop always is.
  void setAuthorized(bool flag) override;
  void stopTimer() override;
  /// Bytes that are no document make an empty sample, which is distributed like any other. While
  /// the gate is closed the sample is kept and nobody is told.
  void handleResult(std::optional<base::Bytes> bytes) override;

  PowerValues getPowerValues() const override;
  ClusterFrequencies getClusterFrequencies() const override;
  GPUFrequency getGPUFrequency() const override;
  ClusterCPUs getClusterCPUs() const override;
  /// Every cluster of the current sample, whatever it is called. Asked for while a row is taken, on
  /// the delivery thread, it is that row's: the next sample comes after it on the same thread.
  std::vector<Cluster> getClusters() const;

 private:
  explicit SGPowerMetrics(const Services& services);

  struct Settings {
    bool includeGPU = false;
    double msSampling = 0;
    bool operator==(const Settings&) const = default;
  };

  Settings storedSettings() const;
  void readSettings();
  void startTimer();
  void requestSample();
  /// The manager while it allows sampling; nullptr while it doesn't, and when it is gone.
  std::shared_ptr<helper_link::SamplingGate> openGate() const;
  void distribute();
  void postOnMainQueue(std::string_view notice);
  std::shared_ptr<const base::PropertyList> data() const;

  const Services services_;

  // Set before sampling starts, read by both threads.
  std::weak_ptr<helper_link::SamplingGate> gate_;
  Fanout fanout_;

  mutable base::Mutex mutex_;
  std::shared_ptr<const base::PropertyList> data_ PALLIMO_GUARDED_BY(mutex_);

  std::atomic<bool> includeGPU_ = false;
  std::atomic<double> msSampling_ = 500;
  std::atomic<bool> isAuthorized_ = false;
  std::atomic<std::uint64_t> emptyResults_ = 0;

  // Owned by the main thread; hasTimer_ tells other threads whether it is there.
  std::unique_ptr<ports::RepeatingTimer> timer_;
  std::atomic<bool> hasTimer_ = false;

  base::Subscription defaultsChange_;
};

}  // namespace pallimo::sampling
