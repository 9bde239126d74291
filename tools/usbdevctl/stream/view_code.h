// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The library's codes for whether a live view can be shown, and why not.
#pragma once

#include <optional>
#include <string>

#include "output/fields.h"

namespace usbdevctl {

constexpr int kViewOpens = -1;
constexpr int kUnknownShareId = 9011;

/// Why a view does not open.
std::string viewReason(int code);

/// Whether a view opens, and if not, why; nothing without a code.
void addView(Fields &fields, const std::string &heading, const std::string &member, std::optional<int> code);

}  // namespace usbdevctl
