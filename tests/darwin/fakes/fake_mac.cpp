// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "darwin/fakes/fake_mac.h"

#include <stdexcept>

namespace pallimo::darwin {

namespace {

FakeMac* theMac = nullptr;

}  // namespace

FakeMac::FakeMac() {
  if (theMac != nullptr) throw std::logic_error("one Mac at a time");
  theMac = this;
}

FakeMac::~FakeMac() { theMac = nullptr; }

FakeMac& FakeMac::current() {
  if (theMac == nullptr) throw std::logic_error("the program called a Mac that is not there");
  return *theMac;
}

bool FakeMac::fails(const char* function) {
  fallible_.emplace_back(function);
  return fallible_.size() == failing_;
}

std::vector<std::string> FakeMac::held() const {
  std::vector<std::string> lines = objects.held();
  for (const std::string& line : names.held()) lines.push_back(line);
  for (const auto& [address, words] : mapped) {
    lines.push_back(std::to_string(words.size()) + " mapped words");
  }
  return lines;
}

}  // namespace pallimo::darwin
