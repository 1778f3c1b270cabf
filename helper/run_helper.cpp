// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "helper/run_helper.h"

#include "helper/helper_service.h"

namespace pallimo::helper {

int runHelper(HelperPlatform& platform) {
  PowermetricsRuns runs({platform.childProcesses(), platform.systemLog()}, platform.powermetrics());
  std::shared_ptr<HelperService> service;  // outlives the listener
  const auto listener = platform.makeListener();
  service = std::make_shared<HelperService>(
      HelperService::Services{platform.mainQueue(), *listener, platform.helperFiles(), runs},
      HelperService::Settings{platform.version(), platform.idleLimit()},
      [&platform] { platform.stop(); });
  const bool isServing = service->start();
  platform.didStart();
  if (isServing) platform.run();
  service->end();
  return 0;
}

}  // namespace pallimo::helper
