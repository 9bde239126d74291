// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// A record as the line of JSON that a program would read.
#pragma once

#include <string>

#include "output/fields.h"

inline std::string jsonOf(const usbdevctl::Fields &fields) { return fields.addTo(usbdevctl::Json::document()).line(); }
