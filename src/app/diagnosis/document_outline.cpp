// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "app/diagnosis/document_outline.h"

#include <unordered_map>

namespace pallimo::app {

namespace {

using base::PropertyList;

constexpr int kDeepest = 8;

struct KindAndSize {
  std::string kind;
  std::size_t size = 0;
};

KindAndSize kindAndSize(const PropertyList& value) {
  if (const auto* dictionary = value.dictionary()) return {"dictionary", dictionary->size()};
  if (const auto* array = value.array()) return {"list", array->size()};
  if (const auto* text = value.text()) return {"text", text->size()};
  if (const auto* data = value.data()) return {"data", data->size()};
  if (value.boolean() != nullptr) return {"boolean", 0};
  if (value.date() != nullptr) return {"date", 0};
  return {"number", 0};
}

class Outline {
 public:
  /// What lies in the value: the entries of a dictionary, or of a list's dictionaries all together.
  void enter(const PropertyList& value, const std::string& path, int depth) {
    if (depth > kDeepest) return;
    if (const auto* dictionary = value.dictionary()) {
      for (const auto& [key, inner] : *dictionary) {
        const std::string inside = path.empty() ? key : path + "/" + key;
        note(inner, inside);
        enter(inner, inside, depth + 1);
      }
    } else if (const auto* array = value.array()) {
      for (const PropertyList& element : *array) {
        if (element.array() == nullptr) enter(element, path + "[]", depth + 1);
      }
    }
  }

  std::vector<OutlineEntry> take() { return std::move(entries_); }

 private:
  void note(const PropertyList& value, const std::string& path) {
    const auto [known, isNew] = places_.emplace(path, entries_.size());
    if (isNew) entries_.push_back({path, kindAndSize(value).kind, 0, 0});
    OutlineEntry& entry = entries_[known->second];
    const KindAndSize now = kindAndSize(value);
    ++entry.count;
    if (entry.kind != now.kind) entry.kind = "mixed";
    if (now.size > entry.size) entry.size = now.size;
  }

  std::vector<OutlineEntry> entries_;
  std::unordered_map<std::string, std::size_t> places_;
};

std::string counted(std::size_t count, const char* one, const char* several) {
  return std::to_string(count) + " " + (count == 1 ? one : several);
}

}  // namespace

std::vector<OutlineEntry> outlineOf(const base::PropertyList& document) {
  Outline outline;
  outline.enter(document, "", 1);
  return outline.take();
}

std::string sizeText(const OutlineEntry& entry) {
  const std::string limit = entry.count > 1 ? "up to " : "";
  if (entry.kind == "dictionary") return limit + counted(entry.size, "entry", "entries");
  if (entry.kind == "list") return limit + counted(entry.size, "element", "elements");
  if (entry.kind == "text" || entry.kind == "data") {
    return limit + counted(entry.size, "byte", "bytes");
  }
  return "";
}

}  // namespace pallimo::app
