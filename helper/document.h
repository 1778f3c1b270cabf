// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include "base/bytes.h"

namespace pallimo::helper {

/// What a sample's document is of the bytes that `powermetrics` printed. It separates documents
/// with NUL bytes; one before a text document would stop the platform's reader, so a text document
/// loses those at both ends. A binary one ("bplist") is left as it is: its last bytes are part of
/// its table. A pure function.
base::Bytes trimDocument(base::Bytes printed);

}  // namespace pallimo::helper
