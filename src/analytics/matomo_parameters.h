// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <string_view>

namespace pallimo::analytics {

// The names of the parameters in Matomo's tracking protocol.

inline constexpr std::string_view kMatomoParameterEventCategory = "e_c";
inline constexpr std::string_view kMatomoParameterEventAction = "e_a";
inline constexpr std::string_view kMatomoParameterEventName = "e_n";
inline constexpr std::string_view kMatomoParameterEventValue = "e_v";
inline constexpr std::string_view kMatomoParameterURL = "url";

/// Makes each URL another one, so that nothing between app and server answers from its store.
inline constexpr std::string_view kMatomoParameterRandomNumber = "r";
inline constexpr std::string_view kMatomoParameterHours = "h";          ///< local
inline constexpr std::string_view kMatomoParameterMinutes = "m";        ///< local
inline constexpr std::string_view kMatomoParameterSeconds = "s";        ///< local
inline constexpr std::string_view kMatomoParameterDateAndTime = "cdt";  ///< UTC

inline constexpr std::string_view kMatomoParameterSessionStart = "new_visit";
inline constexpr std::string_view kMatomoParameterTotalNumberOfVisits = "_idvc";
inline constexpr std::string_view kMatomoParameterPreviousVisitTimestamp = "_viewts";
inline constexpr std::string_view kMatomoParameterVisitScopeCustomVariables = "_cvar";

inline constexpr std::string_view kMatomoParameterSiteID = "idsite";
inline constexpr std::string_view kMatomoParameterRecord = "rec";
inline constexpr std::string_view kMatomoParameterAPIVersion = "apiv";
inline constexpr std::string_view kMatomoParameterScreenResolution = "res";
inline constexpr std::string_view kMatomoParameterVisitorID = "_id";
inline constexpr std::string_view kMatomoParameterFirstVisitTimestamp = "_idts";

}  // namespace pallimo::analytics
