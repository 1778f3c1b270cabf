// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/qt/qt_http_client.h"

#include <netdb.h>
#include <sys/socket.h>

#include <QEventLoop>
#include <QMetaObject>
#include <QNetworkProxy>
#include <QNetworkProxyFactory>
#include <QUrl>
#include <algorithm>
#include <iterator>
#include <system_error>
#include <utility>

#include "adapters/qt/http_exchange.h"
#include "adapters/qt/http_target.h"

namespace pallimo::adapters::qt {

namespace {

QNetworkProxy systemProxy(const std::string& text) {
  const QUrl url = QUrl::fromEncoded(QByteArray::fromStdString(text));
  const auto proxies = QNetworkProxyFactory::systemProxyForQuery(QNetworkProxyQuery(url));
  return proxies.isEmpty() ? QNetworkProxy(QNetworkProxy::NoProxy) : proxies.first();
}

bool systemHasAddress(const std::string& name) {
  addrinfo hints{};
  hints.ai_socktype = SOCK_STREAM;
  addrinfo* addresses = nullptr;
  if (getaddrinfo(name.c_str(), nullptr, &hints, &addresses) != 0) return false;
  freeaddrinfo(addresses);
  return true;
}

}  // namespace

/// One request's way. Its own thread runs it; end() comes from elsewhere.
class QtHttpClient::Transfer {
 public:
  Transfer(ports::HttpRequest request, HttpTarget target, NameLookUp hasAddress)
      : request_(std::move(request)),
        target_(std::move(target)),
        hasAddress_(std::move(hasAddress)) {}

  void run() {
    // The end of the program waits for a look-up that Qt has begun, for as long as the system's
    // resolver tries, and both the user's proxies and a name may be waited for. So they are asked
    // for here, before anything of Qt's is under way, on a thread that can be left behind; when Qt
    // asks for the same name the answer has come already.
    const QNetworkProxy proxy = systemProxy(request_.url);
    const bool isDirect = proxy.type() == QNetworkProxy::NoProxy;
    const QString name = isDirect ? target_.host : proxy.hostName();
    const bool isKnown = hasAddress_(name.toStdString());
    if (goOn() && isKnown) transfer(proxy);
    base::MutexLock lock(mutex_);
    hasEnded_ = true;
  }

  bool hasEnded() const {
    base::MutexLock lock(mutex_);
    return hasEnded_;
  }

  /// Gives the request up. True when the thread ends soon, false when that is for the system to
  /// say; from then on it touches nothing but this.
  bool end() {
    base::MutexLock lock(mutex_);
    isGivenUp_ = true;
    // An event for the other thread, which must not end its loop meanwhile.
    if (loop_ != nullptr) QMetaObject::invokeMethod(loop_, &QEventLoop::quit, Qt::QueuedConnection);
    return !isLookingUp_;
  }

 private:
  bool goOn() {
    base::MutexLock lock(mutex_);
    // Who has given up does not wait for this thread, so that it is as if the look-up went on.
    if (!isGivenUp_) isLookingUp_ = false;
    return !isGivenUp_;
  }

  void transfer(const QNetworkProxy& proxy) {
    QEventLoop loop;
    setLoop(&loop);
    {
      const HttpExchange exchange({.target = target_,
                                   .text = httpRequestText(target_, request_.cachePolicy),
                                   .timeout = request_.timeout,
                                   .proxy = proxy},
                                  [&loop] { loop.quit(); });
      if (!isGivenUp()) loop.exec();
    }
    setLoop(nullptr);
  }

  void setLoop(QEventLoop* loop) {
    base::MutexLock lock(mutex_);
    loop_ = loop;
  }

  bool isGivenUp() const {
    base::MutexLock lock(mutex_);
    return isGivenUp_;
  }

  const ports::HttpRequest request_;
  const HttpTarget target_;
  const NameLookUp hasAddress_;
  mutable base::Mutex mutex_;
  bool isLookingUp_ PALLIMO_GUARDED_BY(mutex_) = true;
  bool isGivenUp_ PALLIMO_GUARDED_BY(mutex_) = false;
  bool hasEnded_ PALLIMO_GUARDED_BY(mutex_) = false;
  QEventLoop* loop_ PALLIMO_GUARDED_BY(mutex_) = nullptr;
};

QtHttpClient::QtHttpClient() : QtHttpClient(systemHasAddress) {}

QtHttpClient::QtHttpClient(NameLookUp hasAddress) : hasAddress_(std::move(hasAddress)) {}

QtHttpClient::~QtHttpClient() {
  std::vector<Running> running;
  {
    base::MutexLock lock(mutex_);
    running = std::exchange(running_, {});
  }
  for (Running& each : running) {
    if (each.transfer->end()) {
      each.thread.join();
    } else {
      each.thread.detach();
    }
  }
}

void QtHttpClient::send(const ports::HttpRequest& request) {
  auto target = httpTarget(request.url);
  if (!target) return;
  const auto transfer = std::make_shared<Transfer>(request, *std::move(target), hasAddress_);
  std::vector<Running> ended;
  {
    base::MutexLock lock(mutex_);
    ended = takeEnded();
    try {
      running_.push_back({transfer, std::thread([transfer] { transfer->run(); })});
    } catch (const std::system_error&) {
      // No thread, no request.
    }
  }
  for (Running& each : ended) each.thread.join();
}

std::size_t QtHttpClient::underWay() const {
  base::MutexLock lock(mutex_);
  return static_cast<std::size_t>(
      std::count_if(running_.begin(), running_.end(),
                    [](const Running& each) { return !each.transfer->hasEnded(); }));
}

std::vector<QtHttpClient::Running> QtHttpClient::takeEnded() {
  const auto firstEnded = std::partition(running_.begin(), running_.end(), [](const Running& each) {
    return !each.transfer->hasEnded();
  });
  std::vector<Running> ended(std::make_move_iterator(firstEnded),
                             std::make_move_iterator(running_.end()));
  running_.erase(firstEnded, running_.end());
  return ended;
}

}  // namespace pallimo::adapters::qt
