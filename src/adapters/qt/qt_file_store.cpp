// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/qt/qt_file_store.h"

#include <QSaveFile>
#include <QStandardPaths>
#include <QString>

namespace pallimo::adapters::qt {

namespace {

/// Folders may have line ends in their names; the line that names one is still one line.
std::string oneLine(const std::string& text) {
  std::string line;
  for (const char character : text) {
    if (character == '\n') {
      line += "\\n";
    } else if (character == '\r') {
      line += "\\r";
    } else {
      line += character;
    }
  }
  return line;
}

/// A disk that fills up takes a part first; why it takes no more it says at the next attempt.
bool writeAll(QSaveFile& file, std::string_view piece) {
  while (!piece.empty()) {
    const qint64 written = file.write(piece.data(), static_cast<qint64>(piece.size()));
    if (written <= 0) return false;
    piece.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

std::string description(const std::string& path, const QSaveFile& file) {
  return oneLine(path + ": " + file.errorString().toStdString());
}

}  // namespace

std::optional<std::string> QtFileStore::writeAtomically(
    const std::string& path, const std::function<void(const Writer&)>& fill) {
  QSaveFile file(QString::fromStdString(path));
  file.setDirectWriteFallback(false);
  // The pieces are large enough as they come; and no buffer is left whose write could fail unseen.
  if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered)) return description(path, file);
  bool isWritten = true;
  fill([&file, &isWritten](std::string_view piece) {
    isWritten = isWritten && writeAll(file, piece);
  });
  if (!isWritten) {
    std::string error = description(path, file);
    file.cancelWriting();
    return error;
  }
  if (!file.commit()) return description(path, file);
  return std::nullopt;
}

std::optional<std::string> QtFileStore::desktopFolder() const {
  std::string folder =
      QStandardPaths::writableLocation(QStandardPaths::DesktopLocation).toStdString();
  while (folder.size() > 1 && folder.back() == '/') folder.pop_back();
  if (folder.empty()) return std::nullopt;
  return folder;
}

}  // namespace pallimo::adapters::qt
