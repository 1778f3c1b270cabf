// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "app/models/shared_general_model.h"

#include <memory>
#include <optional>

#include "base/fatal.h"
#include "base/mutex.h"

namespace pallimo::app {

namespace {

struct Shared {
  explicit Shared(const Platform& filled) : platform(filled) {}

  const Platform platform;
  base::Mutex mutex;
  std::unique_ptr<GeneralModel> model PALLIMO_GUARDED_BY(mutex);
};

// Never destroyed at exit: what the models refer to is gone by then.
std::optional<Shared>& shared() {
  static auto* const instance = new std::optional<Shared>;
  return *instance;
}

}  // namespace

SharedGeneralModel::SharedGeneralModel(const Platform& platform) { shared().emplace(platform); }

SharedGeneralModel::~SharedGeneralModel() { shared().reset(); }

GeneralModel& SharedGeneralModel::get() {
  if (!shared()) base::fatal("The general model was asked for before there was a platform.");
  // Held while the model is created, unlike other locks: that is what makes it one. Creating it
  // calls nobody who comes back here.
  base::MutexLock lock(shared()->mutex);
  std::unique_ptr<GeneralModel>& model = shared()->model;
  if (!model) model = std::make_unique<GeneralModel>(shared()->platform);
  return *model;
}

}  // namespace pallimo::app
