// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "base/property_list.h"
#include "ports/property_list_reader.h"
#include "sampling/cluster.h"
#include "sampling/sample_reader.h"

namespace pallimo::sampling {

// From the bytes of one `powermetrics` document to the figures that the modules read. Pure
// functions, any thread; a sample is the document's top-level dictionary, and anything in it that
// is missing or of the wrong kind is left out in silence, never an error.

/// The document's top-level dictionary with what the functions below look at and nothing else,
/// which is a twentieth of it; an empty dictionary when the bytes are no property list or its top
/// level is of another kind.
base::PropertyList parseSample(const ports::PropertyListReader& reader,
                               std::span<const std::uint8_t> bytes);

/// Those of "cpu_energy", "dram_energy", "combined_power", "gpu_energy", "ane_energy" that the
/// section "processor" holds, each value unchanged and of whatever kind it is: millijoules over
/// the sampling period, combined_power milliwatts.
PowerValues powerValues(const base::PropertyList& sample);

/// Exactly "E-Cluster" and "P-Cluster": the highest frequency among the kind's recognised
/// clusters in MHz, 0 when there is none. Recognised are the kind's letter, nothing or one digit,
/// and "-Cluster"; of clusters with the same name the last one counts.
ClusterFrequencies clusterFrequencies(const base::PropertyList& sample);

/// "freq_hz" of the section "gpu", unchanged (megahertz, in spite of its name), or nothing.
GPUFrequency gpuFrequency(const base::PropertyList& sample);

/// Exactly "E-Cluster" and "P-Cluster": the logical CPU numbers of the kind's recognised clusters,
/// the unnumbered cluster first, then by number, each cluster's in document order. Empty when the
/// sample holds no named cluster at all.
ClusterCPUs clusterCPUs(const base::PropertyList& sample);

/// Every cluster of the document in its order, recognised or not, several of one name included. An
/// entry of the list that is no dictionary is no cluster.
std::vector<Cluster> allClusters(const base::PropertyList& sample);

}  // namespace pallimo::sampling
