// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/qt/http_exchange.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace pallimo::adapters::qt {

namespace {

constexpr qint64 kLongestAnswer = 64 * 1024;

int wholeMilliseconds(double seconds) {
  constexpr double kLongest = std::numeric_limits<int>::max();
  return static_cast<int>(std::clamp(std::round(seconds * 1000), 1.0, kLongest));
}

}  // namespace

HttpExchange::HttpExchange(const Request& request, std::function<void()> ended)
    : text_(request.text), ended_(std::move(ended)) {
  connectSignals();
  limit_.setSingleShot(true);
  limit_.start(wholeMilliseconds(request.timeout));
  socket_.setProxy(request.proxy);
  const HttpTarget& target = request.target;
  if (target.isEncrypted) {
    socket_.connectToHostEncrypted(target.host, target.port);
  } else {
    socket_.connectToHost(target.host, target.port);
  }
}

void HttpExchange::connectSignals() {
  const auto progress = [this] { limit_.start(); };
  QObject::connect(&socket_, &QSslSocket::stateChanged, &socket_, progress);
  QObject::connect(&socket_, &QSslSocket::encrypted, &socket_, progress);
  QObject::connect(&socket_, &QSslSocket::bytesWritten, &socket_, progress);
  QObject::connect(&socket_, &QSslSocket::readyRead, &socket_, progress);

  QObject::connect(&socket_, &QSslSocket::connected, &socket_, [this] {
    if (socket_.mode() == QSslSocket::UnencryptedMode) sendText();
  });
  QObject::connect(&socket_, &QSslSocket::encrypted, &socket_, [this] { sendText(); });
  QObject::connect(&socket_, &QSslSocket::readyRead, &socket_, [this] { dropAnswer(); });

  // Queued: the socket may fail while it is being told to connect, and is still at work whenever it
  // says so.
  constexpr auto kQueued = Qt::QueuedConnection;
  QObject::connect(
      &socket_, &QSslSocket::disconnected, &socket_, [this] { end(); }, kQueued);
  QObject::connect(
      &socket_, &QSslSocket::errorOccurred, &socket_, [this] { end(); }, kQueued);
  QObject::connect(&limit_, &QTimer::timeout, &socket_, [this] { end(); });
}

void HttpExchange::sendText() { socket_.write(text_); }

void HttpExchange::dropAnswer() {
  dropped_ += socket_.readAll().size();
  if (dropped_ > kLongestAnswer) socket_.abort();
}

void HttpExchange::end() {
  limit_.stop();
  if (const auto ended = std::exchange(ended_, nullptr)) ended();
}

}  // namespace pallimo::adapters::qt
