// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/libplist/xml_extract.h"

#include <algorithm>
#include <cstddef>
#include <vector>

#include "adapters/libplist/document_limits.h"
#include "adapters/libplist/xml_entities.h"
#include "adapters/libplist/xml_markup.h"
#include "adapters/libplist/xml_number.h"

namespace pallimo::adapters::libplist {

namespace {

constexpr std::size_t kEnd = std::string_view::npos;
constexpr std::string_view kCDataOpen = "<![CDATA[";
constexpr std::string_view kCDataClose = "]]>";

enum class Element : char { plist, dict, array, text };

/// What libplist is shown in place of a stretch of the document.
enum class Shown { nothing, escapedText, emptyKey };

struct Cut {
  std::size_t begin;
  std::size_t end;
  Shown shown;
};

Element elementOf(std::string_view name) {
  if (name.size() < 4 || name.size() > 5) return Element::text;
  if (name == "dict") return Element::dict;
  if (name == "array") return Element::array;
  if (name == "plist") return Element::plist;
  return Element::text;
}

bool isContainer(Element element) { return element == Element::dict || element == Element::array; }

class Scanner {
 public:
  explicit Scanner(std::string_view bytes) : bytes_(bytes) {}

  std::optional<std::string_view> document(std::string& scratch) {
    if (!skipPrologue()) return std::nullopt;
    const std::size_t begin = at_;
    do {
      at_ = bytes_.find('<', at_);
      if (at_ == kEnd || !readMarkup()) return std::nullopt;
    } while (!open_.empty());
    const std::string_view whole = bytes_.substr(begin, at_ - begin);
    if (whole.find('\0') != kEnd) return std::nullopt;
    // Judged as libplist will see it: CDATA becomes entities.
    std::string_view shown = whole;
    if (!cuts_.empty()) {
      rewrite(begin, scratch);
      shown = scratch;
    }
    if (!hasFewEntities(shown)) return std::nullopt;
    return shown;
  }

 private:
  bool startsWith(std::string_view word) const { return bytes_.substr(at_).starts_with(word); }

  /// Moves behind the next `word`, the search beginning `ahead` characters further on.
  bool moveBehind(std::string_view word, std::size_t ahead) {
    const std::size_t found = bytes_.find(word, std::min(at_ + ahead, bytes_.size()));
    if (found == kEnd) return false;
    at_ = found + word.size();
    return true;
  }

  bool skipPrologue() {
    if (startsWith("\xEF\xBB\xBF")) at_ += 3;
    for (;;) {
      while (at_ < bytes_.size() && isSpace(bytes_[at_])) ++at_;
      if (startsWith("<?")) {
        if (!moveBehind("?>", 2)) return false;
      } else if (startsWith(kCommentOpen)) {
        if (!moveBehind(kCommentClose, kCommentOpen.size())) return false;
      } else if (startsWith("<!DOCTYPE")) {
        if (!skipDoctype()) return false;
      } else {
        return at_ < bytes_.size() && bytes_[at_] == '<';
      }
    }
  }

  bool skipDoctype() {
    std::size_t brackets = 0;
    ++at_;
    while (at_ < bytes_.size()) {
      const char c = bytes_[at_];
      if (startsWith(kCommentOpen)) {
        if (!moveBehind(kCommentClose, kCommentOpen.size())) return false;
        continue;
      }
      if (startsWith("<?")) {
        if (!moveBehind("?>", 2)) return false;
        continue;
      }
      if (c == '"' || c == '\'') {
        if (!moveBehind(bytes_.substr(at_, 1), 1)) return false;
        continue;
      }
      ++at_;
      if (c == '[') ++brackets;
      if (c == ']' && brackets > 0) --brackets;
      if (c == '>' && brackets == 0) return true;
    }
    return false;
  }

  /// What begins with the `<` at the present place.
  bool readMarkup() {
    const char next = at_ + 1 < bytes_.size() ? bytes_[at_ + 1] : '\0';
    const std::size_t begin = at_;
    if (next != '!' && next != '?') return readTag();
    if (next == '?') return moveBehind("?>", 2) && cut(begin, Shown::nothing);
    if (startsWith(kCommentOpen)) {
      return moveBehind(kCommentClose, kCommentOpen.size()) && cut(begin, Shown::nothing);
    }
    // Text is nowhere else than in an element that holds text.
    if (!startsWith(kCDataOpen) || open_.empty() || open_.back() != Element::text) return false;
    return moveBehind(kCDataClose, kCDataOpen.size()) && cut(begin, Shown::escapedText);
  }

  bool cut(std::size_t begin, Shown shown) {
    cuts_.push_back({begin, at_, shown});
    return true;
  }

  bool readTag() {
    const std::size_t tag = at_;
    std::size_t end = at_ + 1;
    const bool closes = end < bytes_.size() && bytes_[end] == '/';
    if (closes) ++end;
    const std::size_t begin = end;
    while (end < bytes_.size() && !endsName(bytes_[end])) ++end;
    std::string_view name = bytes_.substr(begin, end - begin);
    if (end < bytes_.size() && isSpace(bytes_[end])) end = endOfAttributes(end);
    if (end >= bytes_.size() || bytes_[end] != '>') return false;
    at_ = end + 1;
    const bool isEmpty = bytes_[end - 1] == '/';
    if (name.ends_with('/')) name.remove_suffix(1);
    if (name.empty()) return false;
    if (closes) return !isEmpty && close(elementOf(name));
    if (++elements_ > kMaxElements || !open(elementOf(name), isEmpty)) return false;
    const bool isInteger = name == "integer";
    if ((isInteger || name == "real") && (isEmpty || !takeNumber(isInteger))) return false;
    // libplist knows no key in one tag.
    if (isEmpty && name == "key") return cut(tag, Shown::emptyKey);
    if (!isEmpty && open_.back() == Element::text) skipPlainText(name);
    return true;
  }

  /// Judges the text of a number, which ends at its end tag and nowhere before.
  bool takeNumber(bool isInteger) {
    const std::size_t mark = bytes_.find("</", at_);
    if (mark == kEnd) return false;
    const std::string_view text = bytes_.substr(at_, mark - at_);
    if (!isInteger) return isReal(text);
    const auto judged = judgeInteger(text);
    if (!judged) return false;
    const std::size_t sign = at_ + judged->skippedBeforeSign;
    if (sign > at_) cuts_.push_back({at_, sign, Shown::nothing});
    if (judged->skippedAfterSign > 0) {
      cuts_.push_back({sign + 1, sign + 1 + judged->skippedAfterSign, Shown::nothing});
    }
    return true;
  }

  /// Most of a document is `<key>name</key>` and the like: takes text and end tag in one step.
  void skipPlainText(std::string_view name) {
    const std::size_t mark = bytes_.find('<', at_);
    if (mark == kEnd) return;
    const std::string_view rest = bytes_.substr(mark + 1);
    const std::size_t size = name.size();
    if (rest.size() < size + 2 || rest[0] != '/' || rest[size + 1] != '>') return;
    if (rest.substr(1, size) != name) return;
    open_.pop_back();
    at_ = mark + size + 3;
  }

  static bool endsName(char c) { return c == '>' || c == '<' || isSpace(c); }

  /// Where the tag ends whose name ends at `begin`; kEnd when that could be argued about.
  std::size_t endOfAttributes(std::size_t begin) const {
    const std::size_t end = bytes_.find_first_of("<>", begin);
    if (end == kEnd) return kEnd;
    const std::string_view attributes = bytes_.substr(begin, end - begin);
    const bool isQuotedEvenly = std::count(attributes.begin(), attributes.end(), '"') % 2 == 0 &&
                                std::count(attributes.begin(), attributes.end(), '\'') % 2 == 0;
    return isQuotedEvenly ? end : kEnd;
  }

  bool open(Element element, bool isEmpty) {
    if (!open_.empty() && !mayHoldAnother(element)) return false;
    if (isContainer(element) && nesting_ + 1 >= kMaxNesting) return false;
    if (isEmpty) return true;
    open_.push_back(element);
    if (isContainer(element)) ++nesting_;
    return true;
  }

  /// Whether the innermost open element may hold one more, of this kind.
  bool mayHoldAnother(Element element) {
    if (element == Element::plist) return false;
    if (isContainer(open_.back())) return true;
    if (open_.back() == Element::text || hasValue_) return false;
    hasValue_ = true;  // a <plist> holds one value; libplist lets a second scalar pass
    return true;
  }

  bool close(Element element) {
    if (open_.empty() || open_.back() != element) return false;
    open_.pop_back();
    if (isContainer(element)) --nesting_;
    return true;
  }

  void rewrite(std::size_t begin, std::string& scratch) const {
    scratch.clear();
    scratch.reserve(at_ - begin);
    for (const Cut& cut : cuts_) {
      scratch.append(bytes_.substr(begin, cut.begin - begin));
      if (cut.shown == Shown::escapedText) appendEscaped(cut, scratch);
      if (cut.shown == Shown::emptyKey) scratch.append("<key></key>");
      begin = cut.end;
    }
    scratch.append(bytes_.substr(begin, at_ - begin));
  }

  void appendEscaped(const Cut& cut, std::string& scratch) const {
    const std::size_t begin = cut.begin + kCDataOpen.size();
    for (const char c : bytes_.substr(begin, cut.end - kCDataClose.size() - begin)) {
      if (c == '<') {
        scratch += "&lt;";
      } else if (c == '&') {
        scratch += "&amp;";
      } else {
        scratch += c;
      }
    }
  }

  const std::string_view bytes_;
  std::size_t at_ = 0;
  std::vector<Element> open_;
  std::size_t nesting_ = 0;  ///< how many containers are open
  std::size_t elements_ = 0;
  bool hasValue_ = false;  ///< of the outermost <plist>
  std::vector<Cut> cuts_;
};

}  // namespace

std::optional<std::string_view> extractXML(std::string_view bytes, std::string& scratch) {
  return Scanner(bytes).document(scratch);
}

}  // namespace pallimo::adapters::libplist
