// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <string>
#include <vector>

#include "ports/user_identity.h"

namespace pallimo::privacy {

/// The words by which a text would tell who runs this process and on which machine: the user's
/// short and full name, the home folder and the machine's name in the network, as the environment
/// and the system know them. They are looked up to be left out of a report, and for nothing else.
/// Main thread.
std::vector<std::string> wordsThatTellTheUser(const ports::UserIdentity& identity);

/// A name as a whole and in its parts: "Jane Doe,Room 1" is also "Jane Doe", "Jane" and "Doe";
/// "jane-mbp.example.org" also "jane-mbp", "example.org", "jane" and "mbp"; "/home/jane.doe" also
/// "jane.doe", "jane" and "doe". A part of a host's name that many hosts have ("iMac", "local",
/// "desktop") tells nothing and is no word. Pure.
std::vector<std::string> wordsOfFullName(const std::string& name);
std::vector<std::string> wordsOfHostName(const std::string& name);
std::vector<std::string> wordsOfHome(const std::string& path);

}  // namespace pallimo::privacy
