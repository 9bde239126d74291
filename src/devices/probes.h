// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What the host reports about its own model and its codec support.
#pragma once

namespace usbdev {

/// The number of a port on the host's panel; kNone when the host does not report one.
int panelNumberOf(const char *usbslot);

/// Does the host have a picture of its own model?
bool hasModelPicture();

/// Reads whether the host's GPU supports the encoding add-on. False, with no support, when the state file is missing or
/// its first line does not name it.
bool readAddOnSupport(bool &supported);

}  // namespace usbdev
