// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include "app/models/general_model.h"
#include "app/start/platform.h"

namespace pallimo::app {

/// The process's one GeneralModel, created on the first access and only then. For `app/` alone:
/// everything else is handed what it needs.
///
/// main() makes one of these when the platform stands and never destroys it: the models live as
/// long as the process. Tests do, to begin anew. One at a time; a process that accesses the model
/// without one stops.
class SharedGeneralModel {
 public:
  explicit SharedGeneralModel(const Platform& platform);
  /// Ends the model, if it was ever asked for.
  ~SharedGeneralModel();
  SharedGeneralModel(const SharedGeneralModel&) = delete;
  SharedGeneralModel& operator=(const SharedGeneralModel&) = delete;

  /// The model; the first call creates it. Any thread, though the first call belongs to the main
  /// thread.
  static GeneralModel& get();
};

}  // namespace pallimo::app
