// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <QByteArray>
#include <QNetworkProxy>
#include <QSslSocket>
#include <QTimer>
#include <functional>

#include "adapters/qt/http_target.h"

namespace pallimo::adapters::qt {

/// One request and its answer, over a connection of its own. QNetworkAccessManager sends a request
/// again, up to three times, when a server hangs up on it or answers nonsense, and what is counted
/// must arrive once; here it is sent once, whatever comes, and a redirection is an answer like any
/// other.
///
/// Lives on a thread with an event loop. Destroying it closes the connection.
class HttpExchange {
 public:
  struct Request {
    HttpTarget target;
    QByteArray text;
    double timeout;  ///< s without any progress, as it is counted on a Mac
    QNetworkProxy proxy;
  };

  /// Connects and sends; an encrypted connection to its proven host only. Calls `ended` once from
  /// the event loop when the answer is complete, longer than 64 KB or late, or something failed.
  /// The answer's content is dropped as it comes.
  HttpExchange(const Request& request, std::function<void()> ended);
  HttpExchange(const HttpExchange&) = delete;
  HttpExchange& operator=(const HttpExchange&) = delete;

 private:
  void connectSignals();
  void sendText();
  void dropAnswer();
  void end();

  const QByteArray text_;
  std::function<void()> ended_;  ///< empty once called
  qint64 dropped_ = 0;           ///< bytes of the answer
  QTimer limit_;
  QSslSocket socket_;
};

}  // namespace pallimo::adapters::qt
