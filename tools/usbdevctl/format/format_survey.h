// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What a format listing of v4l2-ctl holds, whichever of its two layouts it has: the library reads the older one only,
// and finds no format in the newer one.
#pragma once

#include <string>
#include <vector>

namespace usbdevctl {

struct FormatSurvey {
  enum class Layout { none, older, newer };

  Layout layout = Layout::none;
  std::vector<std::string> codes;  // "MJPG", "YUYV", in the listing's order
};

FormatSurvey surveyFormats(const std::string &listing);

/// "MJPG, YUYV"; "no format".
std::string codesText(const FormatSurvey &survey);

/// What is wrong with the layout, and what to do about it; empty for the one that the library reads.
std::string layoutText(const FormatSurvey &survey);
extern const char *const kLayoutAdvice;

}  // namespace usbdevctl
