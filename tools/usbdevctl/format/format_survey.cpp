// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "format/format_survey.h"

#include <algorithm>
#include <regex>

#include "output/printable.h"
#include "output/reading.h"

namespace usbdevctl {

namespace {

using Layout = FormatSurvey::Layout;

constexpr std::size_t kLongestLine = 256;

}  // namespace

const char *const kLayoutAdvice = "put the host's v4l2-ctl-front in its place, which translates what it prints";

FormatSurvey surveyFormats(const std::string &listing) {
  static const std::regex older_line(R"(^\s*Pixel Format\s*:\s*'(.{4}))");  // Pixel Format: 'MJPG' (compressed)
  static const std::regex newer_line(R"(^\s*\[\d{1,9}\]\s*:\s*'(.{4}))");   // [0]: 'MJPG' (Motion-JPEG, compressed)
  FormatSurvey survey;
  std::istringstream lines = readerOf(listing);
  for (std::string line; std::getline(lines, line);) {
    line.resize(std::min(line.size(), kLongestLine));
    std::smatch found;
    const bool older = std::regex_search(line, found, older_line);
    if (!older && !std::regex_search(line, found, newer_line)) continue;
    survey.layout = older ? Layout::older : Layout::newer;
    survey.codes.push_back(printable(found[1].str()));
  }
  return survey;
}

std::string codesText(const FormatSurvey &survey) {
  std::string text;
  for (const std::string &code : survey.codes) text += (text.empty() ? "" : ", ") + code;
  return text.empty() ? "no format" : text;
}

std::string layoutText(const FormatSurvey &survey) {
  if (survey.layout != Layout::newer) return "";
  return "v4l2-ctl lists " + codesText(survey) + " in a layout that the library does not read ([0]: '" +
         survey.codes.front() + "' instead of Pixel Format: '" + survey.codes.front() + "')";
}

}  // namespace usbdevctl
