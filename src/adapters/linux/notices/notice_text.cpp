// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/linux/notices/notice_text.h"

#include "base/utf8.h"

namespace pallimo::adapters::linux {

namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

// Neither D-Bus nor XML, which the markup is, can carry all of these.
bool isControl(char byte) { return (byte >= 0 && byte < ' ') || byte == '\x7F'; }

void appendMarkup(std::string& text, char byte) {
  switch (byte) {
    case '&':
      text += "&amp;";
      break;
    case '<':
      text += "&lt;";
      break;
    case '>':
      text += "&gt;";
      break;
    default:
      text += byte;
  }
}

void appendVisible(std::string& line, char byte) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  if (!isControl(byte)) {
    line += byte;
  } else if (byte == '\n') {
    line += "\\n";
  } else if (byte == '\r') {
    line += "\\r";
  } else {
    line.append("\\x") += kDigits[static_cast<std::size_t>(byte) >> 4];
    line += kDigits[static_cast<std::size_t>(byte) & 0xF];
  }
}

}  // namespace

std::string plainText(std::string_view bytes) {
  std::string text;
  for (const char byte : base::repairedUtf8(bytes)) {
    if (isControl(byte)) {
      text += kReplacement;
    } else {
      text += byte;
    }
  }
  return text;
}

std::string markupText(std::string_view bytes) {
  std::string text;
  for (const char byte : base::repairedUtf8(bytes)) {
    if (isControl(byte) && byte != '\n' && byte != '\t') {
      text += kReplacement;
    } else {
      appendMarkup(text, byte);
    }
  }
  return text;
}

std::string noticeLine(std::string_view title, std::string_view subtitle) {
  std::string line;
  for (const char byte : title) appendVisible(line, byte);
  line += ": ";
  for (const char byte : subtitle) appendVisible(line, byte);
  return line;
}

}  // namespace pallimo::adapters::linux
