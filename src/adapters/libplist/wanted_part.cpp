// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/libplist/wanted_part.h"

#include <cstddef>
#include <optional>

#include "adapters/libplist/document_limits.h"
#include "adapters/libplist/plain_cursor.h"

namespace pallimo::adapters::libplist {

namespace {

using ports::Wanted;

class Selection {
 public:
  Selection(std::string_view bytes, std::string& kept)
      : bytes_(bytes), cursor_(bytes), kept_(kept) {}

  bool take(const Wanted& wanted) {
    takePrologue();
    if (!takeValue(wanted) || cursor_.elements() + opened_ > kMaxElements) return false;
    keepUpTo(bytes_.size());
    return true;
  }

 private:
  /// Any other beginning is no value, and so no plain document.
  void takePrologue() {
    takeLine("<?xml version=\"1.0\" encoding=\"UTF-8\"?>");
    takeLine(
        "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
        "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">");
    open("<plist version=\"1.0\">");
  }

  void takeLine(std::string_view line) {
    if (cursor_.take(line)) cursor_.skipSpace();
  }

  bool open(std::string_view tag) {
    if (!cursor_.take(tag)) return false;
    ++opened_;
    return true;
  }

  /// Recurses as deep as `wanted` does, and into arrays of arrays as far as they are plain.
  bool takeValue(const Wanted& wanted) {
    cursor_.skipSpace();
    if (wanted.empty()) return cursor_.takeValue();
    if (open("<dict>")) return takeEntries(wanted);
    if (open("<array>")) return takeItems(wanted);
    return cursor_.takeValue();
  }

  bool takeEntries(const Wanted& wanted) {
    for (;;) {
      cursor_.skipSpace();
      const std::size_t begin = cursor_.at();
      if (cursor_.take("</dict>")) return true;
      const std::optional<std::string_view> key = cursor_.takeKey();
      if (!key) return false;
      if (const Wanted* below = ports::wantedBelow(wanted, *key)) {
        if (!takeValue(*below)) return false;
      } else {
        if (!cursor_.takeValue()) return false;
        keepUpTo(begin);
        begin_ = cursor_.at();
      }
    }
  }

  bool takeItems(const Wanted& wanted) {
    if (++arrays_ > PlainCursor::kMaxNesting) return false;
    for (;;) {
      cursor_.skipSpace();
      if (cursor_.take("</array>")) break;
      if (!takeValue(wanted)) return false;
    }
    --arrays_;
    return true;
  }

  void keepUpTo(std::size_t end) { kept_.append(bytes_.substr(begin_, end - begin_)); }

  const std::string_view bytes_;
  PlainCursor cursor_;
  std::string& kept_;
  std::size_t begin_ = 0;   ///< of what is to be kept next
  std::size_t opened_ = 0;  ///< elements that the cursor did not count
  std::size_t arrays_ = 0;  ///< in one another
};

}  // namespace

std::string_view wantedPart(std::string_view bytes, const ports::Wanted& wanted,
                            std::string& scratch) {
  scratch.clear();
  if (wanted.empty() || !Selection(bytes, scratch).take(wanted)) return bytes;
  return scratch;
}

}  // namespace pallimo::adapters::libplist
