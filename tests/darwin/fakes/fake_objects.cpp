// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "darwin/fakes/fake_objects.h"

#include "base/text_format.h"

namespace pallimo::darwin {

const FakeObject* FakeObjects::keep(FakeObject object) {
  objects_.push_back(std::move(object));
  places_.emplace(&objects_.back(), &objects_.back());
  return &objects_.back();
}

const FakeObject* FakeObjects::makeFrom(const base::PropertyList& value) {
  if (const auto* entries = value.dictionary()) {
    FakeDictionary dictionary;
    for (const auto& [key, entry] : *entries) dictionary.emplace_back(make(key), makeFrom(entry));
    return make(std::move(dictionary));
  }
  if (const auto* values = value.array()) {
    FakeArray array;
    for (const auto& entry : *values) array.push_back(makeFrom(entry));
    return make(std::move(array));
  }
  if (const auto* text = value.text()) return make(*text);
  if (const auto* boolean = value.boolean()) return make(*boolean);
  if (const auto* data = value.data()) return make(*data);
  std::int64_t integer = 0;
  if (value.readInteger(integer)) return make(integer);
  if (value.isNumber()) return make(value.numberOr(0));
  return make(FakeThing{"date", nullptr});
}

FakeObject* FakeObjects::living(const void* object, const char* function) {
  const auto found = places_.find(object);
  if (found == places_.end()) {
    complain_(std::string(function) + (object == nullptr ? " of no object" : " of something else"));
    return nullptr;
  }
  if (found->second->references > 0) return found->second;
  complain_(std::string(function) + " of an object that is gone: " + describe(*found->second));
  return nullptr;
}

void FakeObjects::retain(const void* object, const char* function) {
  if (FakeObject* found = living(object, function)) ++found->references;
}

void FakeObjects::release(const void* object, const char* function) {
  FakeObject* found = living(object, function);
  if (found == nullptr || found->isConstant) return;
  if (--found->references == 0) dropParts(*found);
}

void FakeObjects::dropParts(FakeObject& object) {
  if (const auto* array = std::get_if<FakeArray>(&object.value)) {
    for (const FakeObject* part : *array) release(part, "the end of an array");
  }
  if (const auto* dictionary = std::get_if<FakeDictionary>(&object.value)) {
    for (const auto& [key, value] : *dictionary) {
      release(key, "the end of a dictionary");
      release(value, "the end of a dictionary");
    }
  }
  if (auto* thing = std::get_if<FakeThing>(&object.value)) thing->content.reset();
}

std::vector<std::string> FakeObjects::held() const {
  std::vector<std::string> descriptions;
  for (const FakeObject& object : objects_) {
    if (object.references > 0 && !object.isConstant) descriptions.push_back(describe(object));
  }
  return descriptions;
}

std::string FakeObjects::describe(const FakeObject& object) {
  struct Describer {
    std::string operator()(const std::string& text) const { return "text \"" + text + '"'; }
    std::string operator()(std::int64_t number) const { return "number " + std::to_string(number); }
    std::string operator()(double number) const { return "number " + base::formatFixed(number, 3); }
    std::string operator()(bool value) const { return value ? "true" : "false"; }
    std::string operator()(const base::Bytes&) const { return "data"; }
    std::string operator()(const FakeArray&) const { return "array"; }
    std::string operator()(const FakeDictionary&) const { return "dictionary"; }
    std::string operator()(const FakeThing& thing) const { return thing.description; }
  };
  return std::visit(Describer{}, object.value);
}

}  // namespace pallimo::darwin
