// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "events/event_text.h"

#include <ctime>

#include "output/output.h"
#include "output/printable.h"

namespace usbdevctl {

namespace {

constexpr int kInformation = 0;
constexpr int kWarning = 1;

std::string levelName(int level) {
  if (level == kInformation) return "info";
  return level == kWarning ? "warning" : "level " + std::to_string(level);
}

std::string levelColumn(int level) {
  constexpr std::size_t kWidth = 7;  // of "warning"
  std::string name = levelName(level);
  if (name.size() < kWidth) name.resize(kWidth, ' ');
  return name;
}

using BreakDown = tm *(*)(const time_t *, tm *);

std::string timeText(std::int64_t seconds, const char *format, BreakDown break_down) {
  const auto time = static_cast<time_t>(seconds);
  tm parts = {};
  char text[64];
  if (!break_down(&time, &parts) || std::strftime(text, sizeof text, format, &parts) == 0) return "?";
  return text;
}

}  // namespace

std::string eventText(const Event &event, bool colour) {
  const Style style = event.level == kWarning ? Style::notice : Style::plain;
  return timeText(event.time, "%Y-%m-%d %H:%M:%S", localtime_r) + "  " +
         styled(levelColumn(event.level), style, colour) + "  " + printable(event.text) + "\n";
}

Json addEvent(Json object, const Event &event) {
  return std::move(object)
      .set("id", event.id)
      .set("time", timeText(event.time, "%Y-%m-%dT%H:%M:%SZ", gmtime_r))
      .set("level", levelName(event.level))
      .set("text", event.text);
}

}  // namespace usbdevctl
