// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Why a camera is not supported: its name is on the host's list, or it offers no format that the host can use.
#pragma once

#include <optional>
#include <string>

#include "format/format_survey.h"
#include "reason/reason.h"

namespace usbdevctl {

inline constexpr char kUnsupportedList[] = "/etc/config/.usbnosupportlist.dat";
inline constexpr char kCodecPackage[] = "Halvane";

/// What the host needs for encoding in hardware.
struct EncodingFacts {
  bool permitted = false;
  bool arm = false;
  bool package = false;                // the codec package is installed
  std::optional<std::string> enabled;  // as in the host's registry
  bool agent = false;                  // the package has its camera_agent.sh
  bool driver = false;                 // of the graphics
};

/// What is found out about a camera that may not be supported.
struct SupportFacts {
  std::string device;
  bool listed = false;
  int usable_formats = 0;  // as the library counts them
  FormatSurvey survey;
  EncodingFacts encoding;
};

/// Why the host may not encode; no reason where it may.
std::optional<Reason> encodingLack(const EncodingFacts &facts);

bool isUsable(const SupportFacts &facts);

Reason unsupportedReason(const SupportFacts &facts);

}  // namespace usbdevctl
