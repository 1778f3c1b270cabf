// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "app/start/platform.h"

namespace pallimo::app {

/// Tells "smc" when the SMC is opened, "ticks" when the processors' ticks are read, "program" when
/// a program is run, "notices" when somebody becomes the notification centre's delegate and "http"
/// when a request is sent; otherwise the ports of `platform`.
class ProbedPorts {
 public:
  explicit ProbedPorts(const Platform& platform) : platform_(platform) {}

  std::function<void(const std::string&)> tell = [](const std::string&) {};

  Platform platform() {
    return {.mainQueue = platform_.mainQueue,
            .backgroundQueue = platform_.backgroundQueue,
            .notifications = platform_.notifications,
            .defaults = platform_.defaults,
            .propertyLists = platform_.propertyLists,
            .systemControls = platform_.systemControls,
            .smcDevice = smc_,
            .hidSensors = platform_.hidSensors,
            .accelerators = platform_.accelerators,
            .processorTicks = ticks_,
            .programLauncher = launcher_,
            .helperConnector = platform_.helperConnector,
            .authorizationServices = platform_.authorizationServices,
            .helperInstaller = platform_.helperInstaller,
            .bundle = platform_.bundle,
            .clock = platform_.clock,
            .console = platform_.console,
            .systemLog = platform_.systemLog,
            .files = platform_.files,
            .userNotifications = notices_,
            .randomNumbers = platform_.randomNumbers,
            .softwareUpdater = platform_.softwareUpdater,
            .analyticsClient = client_,
            .screens = platform_.screens,
            .processInformation = platform_.processInformation,
            .urlOpener = platform_.urlOpener,
            .metricsServer = platform_.metricsServer,
            .analyticsURL = platform_.analyticsURL};
  }

 private:
  struct Smc final : ports::SmcDevice {
    explicit Smc(ProbedPorts& owner) : owner_(owner) {}
    std::optional<std::uint32_t> open() override {
      owner_.tell("smc");
      return owner_.platform_.smcDevice.open();
    }
    std::int32_t callStructMethod(std::uint32_t connection, std::uint32_t selector,
                                  const ports::SMCRequestRecord& input,
                                  ports::SMCRequestRecord& output) override {
      return owner_.platform_.smcDevice.callStructMethod(connection, selector, input, output);
    }
    void close(std::uint32_t connection) override { owner_.platform_.smcDevice.close(connection); }
    ProbedPorts& owner_;
  };

  struct Ticks final : ports::ProcessorTicks {
    explicit Ticks(ProbedPorts& owner) : owner_(owner) {}
    std::optional<std::vector<ports::ProcessorTickCounts>> read() override {
      owner_.tell("ticks");
      return owner_.platform_.processorTicks.read();
    }
    ProbedPorts& owner_;
  };

  struct Launcher final : ports::ProgramLauncher {
    explicit Launcher(ProbedPorts& owner) : owner_(owner) {}
    std::optional<base::Bytes> run(const std::string& path,
                                   const std::vector<std::string>& arguments) override {
      owner_.tell("program");
      return owner_.platform_.programLauncher.run(path, arguments);
    }
    ProbedPorts& owner_;
  };

  struct Notices final : ports::UserNotifications {
    explicit Notices(ProbedPorts& owner) : owner_(owner) {}
    void setDelegate(std::weak_ptr<ports::UserNotificationsDelegate> delegate) override {
      owner_.tell("notices");
      owner_.platform_.userNotifications.setDelegate(std::move(delegate));
    }
    void requestAuthorization(std::uint32_t options, AuthorizationAnswer answer) override {
      owner_.platform_.userNotifications.requestAuthorization(options, std::move(answer));
    }
    void add(ports::UserNotification notification) override {
      owner_.platform_.userNotifications.add(std::move(notification));
    }
    ProbedPorts& owner_;
  };

  struct Client final : ports::HttpClient {
    explicit Client(ProbedPorts& owner) : owner_(owner) {}
    void send(const ports::HttpRequest& request) override {
      owner_.tell("http");
      owner_.platform_.analyticsClient.send(request);
    }
    ProbedPorts& owner_;
  };

  const Platform platform_;
  Smc smc_{*this};
  Ticks ticks_{*this};
  Launcher launcher_{*this};
  Notices notices_{*this};
  Client client_{*this};
};

}  // namespace pallimo::app
