// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/simulated/text/plist_text.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <string>

namespace pallimo::adapters::simulated {
namespace {

constexpr const char* kHead =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
    "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
    "<plist version=\"1.0\">\n"
    "<dict>\n";
constexpr const char* kTail = "</dict>\n</plist>\n";

/// What `fill` writes between the document's beginning and end.
std::string written(const std::function<void(PlistText&)>& fill) {
  PlistText out;
  fill(out);
  const std::string text = out.take();
  const std::size_t head = std::string(kHead).size();
  const std::size_t tail = std::string(kTail).size();
  EXPECT_EQ(text.substr(0, head), kHead);
  EXPECT_EQ(text.substr(text.size() - tail), kTail);
  return text.substr(head, text.size() - head - tail);
}

std::string realText(double value) {
  return written([value](PlistText& out) { out.real("r", value); });
}

TEST(PlistText, BeginsAndEndsLikeTheSystems) {
  EXPECT_EQ(written([](PlistText&) {}), "");
}

TEST(PlistText, HoldsAnArrayWhereThatIsAskedFor) {
  PlistText out(PlistText::Top::array);
  out.beginDictionary();
  out.endDictionary();
  const std::string text = out.take();
  const std::string prologue = text.substr(0, text.find("<plist"));
  EXPECT_EQ(std::string(kHead).find(prologue), 0u);
  EXPECT_EQ(text.substr(prologue.size()),
            "<plist version=\"1.0\">\n<array>\n<dict>\n</dict>\n</array>\n</plist>\n");
}

TEST(PlistText, WritesScalarsOnOneLine) {
  EXPECT_EQ(written([](PlistText& out) {
              out.boolean("yes", true);
              out.boolean("no", false);
              out.integer("n", -7);
              out.text("t", "Mac14,9");
              out.text("e", "");
            }),
            "<key>yes</key><true/>\n"
            "<key>no</key><false/>\n"
            "<key>n</key><integer>-7</integer>\n"
            "<key>t</key><string>Mac14,9</string>\n"
            "<key>e</key><string></string>\n");
}

TEST(PlistText, WritesDatesInUtc) {
  EXPECT_EQ(written([](PlistText& out) { out.date("d", 1712961759); }),
            "<key>d</key><date>2024-04-12T22:42:39Z</date>\n");
}

TEST(PlistText, WritesRealsWithSixDigits) {
  EXPECT_EQ(realText(0), "<key>r</key><real>0</real>\n");
  EXPECT_EQ(realText(338), "<key>r</key><real>338</real>\n");
  EXPECT_EQ(realText(1.09e9), "<key>r</key><real>1.09e+09</real>\n");
  EXPECT_EQ(realText(990818123.4), "<key>r</key><real>9.90818e+08</real>\n");
  EXPECT_EQ(realText(0.0412716), "<key>r</key><real>0.0412716</real>\n");
  EXPECT_EQ(realText(7.55966e-05), "<key>r</key><real>7.55966e-05</real>\n");
}

TEST(PlistText, WritesNotANumberWithoutASign) {
  EXPECT_EQ(realText(std::nan("")), "<key>r</key><real>nan</real>\n");
  EXPECT_EQ(realText(-std::nan("")), "<key>r</key><real>nan</real>\n");
}

TEST(PlistText, WritesContainersWithoutIndentation) {
  EXPECT_EQ(written([](PlistText& out) {
              out.beginDictionary("d");
              out.beginArray("a");
              out.beginDictionary();
              out.integer("n", 1);
              out.endDictionary();
              out.endArray();
              out.endDictionary();
            }),
            "<key>d</key>\n<dict>\n<key>a</key>\n<array>\n<dict>\n"
            "<key>n</key><integer>1</integer>\n</dict>\n</array>\n</dict>\n");
}

}  // namespace
}  // namespace pallimo::adapters::simulated
