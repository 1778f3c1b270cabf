// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/linux/notices/notify_message.h"

#include <cstdint>
#include <string>
#include <utility>

#include "adapters/linux/notices/notice_text.h"

namespace pallimo::adapters::linux {

namespace {

/// Appends values one by one; once memory is short, nothing more.
class Arguments {
 public:
  explicit Arguments(DBusMessage& message) { dbus_message_iter_init_append(&message, &iterator_); }

  void add(const char* text) { append(DBUS_TYPE_STRING, &text); }
  void add(std::uint32_t number) { append(DBUS_TYPE_UINT32, &number); }
  void add(std::int32_t number) { append(DBUS_TYPE_INT32, &number); }
  void addNoTexts() {
    inside(DBUS_TYPE_ARRAY, DBUS_TYPE_STRING_AS_STRING, [](Arguments&) {});
  }
  /// A map with one entry, from a text to a value of any type.
  void addHint(const char* name, int type, const char* signature, const void* value) {
    inside(DBUS_TYPE_ARRAY, "{sv}", [&](Arguments& map) {
      map.inside(DBUS_TYPE_DICT_ENTRY, nullptr, [&](Arguments& entry) {
        entry.add(name);
        entry.inside(DBUS_TYPE_VARIANT, signature,
                     [&](Arguments& variant) { variant.append(type, value); });
      });
    });
  }

  bool areComplete() const { return areComplete_; }

 private:
  Arguments() = default;

  void append(int type, const void* value) {
    areComplete_ = areComplete_ && dbus_message_iter_append_basic(&iterator_, type, value) != FALSE;
  }

  template <class Fill>
  void inside(int type, const char* signature, Fill fill) {
    Arguments inner;
    areComplete_ = areComplete_ && dbus_message_iter_open_container(&iterator_, type, signature,
                                                                    &inner.iterator_) != FALSE;
    if (!areComplete_) return;
    fill(inner);
    areComplete_ = inner.areComplete_ &&
                   dbus_message_iter_close_container(&iterator_, &inner.iterator_) != FALSE;
    if (!inner.areComplete_) dbus_message_iter_abandon_container(&iterator_, &inner.iterator_);
  }

  DBusMessageIter iterator_ = DBUS_MESSAGE_ITER_INIT_CLOSED;
  bool areComplete_ = true;
};

void addSoundHint(Arguments& arguments, NoticeSound sound) {
  if (sound == NoticeSound::kNone) {
    const dbus_bool_t yes = TRUE;
    arguments.addHint("suppress-sound", DBUS_TYPE_BOOLEAN, DBUS_TYPE_BOOLEAN_AS_STRING, &yes);
  } else {
    // There is no name for "the default": this is what the sound themes have for a mere notice.
    const char* const name = "dialog-information";
    arguments.addHint("sound-name", DBUS_TYPE_STRING, DBUS_TYPE_STRING_AS_STRING, &name);
  }
}

}  // namespace

DBusMessagePtr makeNotify(std::string_view title, std::string_view subtitle, NoticeSound sound) {
  DBusMessagePtr message(dbus_message_new_method_call("org.freedesktop.Notifications",
                                                      "/org/freedesktop/Notifications",
                                                      "org.freedesktop.Notifications", "Notify"));
  if (!message) return nullptr;
  constexpr std::uint32_t kReplacesNone = 0;
  constexpr std::int32_t kDesktopDecides = -1;
  Arguments arguments(*message);
  arguments.add("Pallimo");
  arguments.add(kReplacesNone);
  arguments.add("");  // no icon
  arguments.add(plainText(title).c_str());
  arguments.add(markupText(subtitle).c_str());
  arguments.addNoTexts();  // no buttons
  addSoundHint(arguments, sound);
  arguments.add(kDesktopDecides);  // when it goes
  return arguments.areComplete() ? std::move(message) : nullptr;
}

}  // namespace pallimo::adapters::linux
