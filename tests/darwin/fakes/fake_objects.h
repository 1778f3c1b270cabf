// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <unordered_map>
#include <utility>
#include <variant>
#include <vector>

#include "base/bytes.h"
#include "base/property_list.h"

namespace pallimo::darwin {

struct FakeObject;

/// An object that stands for something elsewhere: its description, and what keeps that alive.
struct FakeThing {
  std::string description;
  std::shared_ptr<void> content;
};

using FakeArray = std::vector<const FakeObject*>;
using FakeDictionary = std::vector<std::pair<const FakeObject*, const FakeObject*>>;

/// An object of CoreFoundation, or of a framework that is built on it.
struct FakeObject {
  using Value = std::variant<std::string, std::int64_t, double, bool, base::Bytes, FakeArray,
                             FakeDictionary, FakeThing>;

  Value value;
  int references = 1;
  bool isConstant = false;      ///< nobody owns it
  CFNumberType numberType = 0;  ///< of a number that the program made: as what
};

/// Every object there ever was, with its count of references. Objects that are gone stay readable,
/// so that whoever uses one is told and does not crash.
class FakeObjects {
 public:
  /// What the program did wrong goes to `complain`, one line each.
  explicit FakeObjects(std::function<void(std::string)> complain)
      : complain_(std::move(complain)) {}

  /// A new object with one reference, which the caller owns. An array and a dictionary take over
  /// the references to what they hold.
  const FakeObject* make(FakeObject::Value value) { return keep({.value = std::move(value)}); }
  const FakeObject* makeConstant(FakeObject::Value value) {
    return keep({.value = std::move(value), .isConstant = true});
  }
  const FakeObject* makeFrom(const base::PropertyList& value);

  void retain(const void* object, const char* function);
  void release(const void* object, const char* function);

  /// The object as a `T`; complains when it is none, is gone or is of another kind, and gives an
  /// empty one then.
  template <typename T>
  const T& read(const void* object, const char* function) {
    static const T kEmpty{};
    const FakeObject* found = living(object, function);
    if (found == nullptr) return kEmpty;
    if (const T* value = std::get_if<T>(&found->value)) return *value;
    complain_(std::string(function) + " of another kind of object: " + describe(*found));
    return kEmpty;
  }
  /// The object; complains and gives nullptr when it is none or is gone.
  FakeObject* living(const void* object, const char* function);

  /// What is still referenced, oldest first.
  std::vector<std::string> held() const;

  static std::string describe(const FakeObject& object);

 private:
  const FakeObject* keep(FakeObject object);
  void dropParts(FakeObject& object);

  std::function<void(std::string)> complain_;
  std::deque<FakeObject> objects_;
  std::unordered_map<const void*, FakeObject*> places_;
};

}  // namespace pallimo::darwin
