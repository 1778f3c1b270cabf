// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <QByteArray>
#include <QHostAddress>
#include <QTcpServer>
#include <QTcpSocket>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace pallimo::adapters::qt {

/// A web server on this machine, on the test's own event loop. It keeps every request it gets.
class LocalHttpServer {
 public:
  /// The bytes of the answer to a request, behind which the connection is closed; none when there
  /// is to be no answer ever.
  using Answer = std::function<std::optional<QByteArray>(const QByteArray& request)>;

  /// Answers at first as a Matomo server does that has nothing to say.
  LocalHttpServer() : LocalHttpServer(std::make_unique<QTcpServer>(), "http") {}
  /// One that makes its connections otherwise, for URLs of that scheme.
  LocalHttpServer(std::unique_ptr<QTcpServer> server, std::string scheme)
      : scheme_(std::move(scheme)), server_(std::move(server)) {
    QObject::connect(server_.get(), &QTcpServer::pendingConnectionAvailable, server_.get(),
                     [this] { accept(); });
    server_->listen(QHostAddress::LocalHost);
  }

  /// "http://127.0.0.1:40123/".
  std::string url() const { return scheme_ + "://" + authority() + "/"; }
  std::string authority() const { return "127.0.0.1:" + std::to_string(server_->serverPort()); }

  void answerWith(Answer answer) { answer_ = std::move(answer); }
  void answerWith(QByteArray bytes) {
    answer_ = [bytes = std::move(bytes)](const QByteArray&) { return bytes; };
  }
  void neverAnswer() {
    answer_ = [](const QByteArray&) { return std::nullopt; };
  }

  /// Line and headers of each request, in order.
  const std::vector<QByteArray>& requests() const { return requests_; }
  /// The connections that the other side or an answer has ended.
  int closedConnections() const { return closed_; }

 private:
  void accept() {
    QTcpSocket* socket = server_->nextPendingConnection();
    QObject::connect(socket, &QTcpSocket::readyRead, socket, [this, socket] { read(*socket); });
    QObject::connect(socket, &QTcpSocket::disconnected, socket, [this] { ++closed_; });
  }

  void read(QTcpSocket& socket) {
    QByteArray& begun = begun_[&socket];
    begun += socket.readAll();
    if (!begun.endsWith("\r\n\r\n")) return;
    const QByteArray request = std::exchange(begun, {});
    requests_.push_back(request);
    const auto answer = answer_(request);
    if (!answer) return;
    socket.write(*answer);
    socket.disconnectFromHost();
  }

  Answer answer_ = [](const QByteArray&) { return "HTTP/1.1 204 No Content\r\n\r\n"; };
  std::vector<QByteArray> requests_;
  std::map<const QTcpSocket*, QByteArray> begun_;  ///< what has arrived of the next request
  int closed_ = 0;
  const std::string scheme_;
  const std::unique_ptr<QTcpServer> server_;  ///< its sockets use the rest
};

}  // namespace pallimo::adapters::qt
