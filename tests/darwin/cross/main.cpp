// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

// Everything of the app that needs no Qt is linked to this, used or not.
int main() { return 0; }
