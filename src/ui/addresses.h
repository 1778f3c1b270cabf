// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

namespace pallimo::ui {

// Where the menus lead. The build decides, since they belong to who ships the app: a build that is
// told nothing leads to names that no one can own.

/// Opens a new e-mail to the support.
inline constexpr const char* kSupportAddress = PALLIMO_SUPPORT_ADDRESS;
/// The store's page of Corvix Stats, the maker's other product.
inline constexpr const char* kStoreAddress = PALLIMO_STORE_ADDRESS;
/// The maker's page on X.
inline constexpr const char* kSocialAddress = PALLIMO_SOCIAL_ADDRESS;

}  // namespace pallimo::ui
