// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "reason/reason.h"

#include <algorithm>
#include <cctype>

#include "output/numbers.h"

namespace usbdevctl {

namespace {

struct Words {
  const char *cause;
  const char *name;
  const char *in_short;
  const char *why;
  const char *remedy;
  bool hinders;
};

/// In the order of the causes.
constexpr Words kWords[] = {
#define USBDEVCTL_REASON(cause, name, in_short, why, remedy) {#cause, name, in_short, why, remedy, true},
#define USBDEVCTL_NOTICE(cause, name, in_short, why, remedy) {#cause, name, in_short, why, remedy, false},
#include "reason/reasons.def"
#undef USBDEVCTL_NOTICE
#undef USBDEVCTL_REASON
};

std::string valueOf(std::string_view name, const ReasonValues &values) {
  const auto found =
      std::find_if(values.begin(), values.end(), [name](const auto &pair) { return pair.first == name; });
  return found == values.end() ? "" : found->second;
}

/// Puts the values in the place of their names. What a value itself has in braces stays.
std::string filled(std::string_view words, const ReasonValues &values) {
  std::string text;
  while (true) {
    const std::size_t open = words.find('{');
    text += words.substr(0, open);
    if (open == std::string_view::npos) return text;
    const std::size_t close = words.find('}', open);
    text += valueOf(words.substr(open + 1, close - open - 1), values);
    words.remove_prefix(close + 1);
  }
}

std::string sentence(std::string text) {
  if (!text.empty()) text.front() = static_cast<char>(std::toupper(static_cast<unsigned char>(text.front())));
  return text + ".";
}

}  // namespace

Reason reasonFor(Cause cause, const ReasonValues &values) {
  const Words &words = kWords[static_cast<std::size_t>(cause)];
  Reason reason = {words.name, filled(words.why, values), filled(words.remedy, values)};
  reason.in_short = filled(words.in_short, values);
  reason.hinders = words.hinders;
  reason.cause = words.cause;
  reason.values = values;
  return reason;
}

std::string sentences(const Reason &reason) { return sentence(reason.why) + " " + sentence(reason.remedy); }

bool anyHinders(const Reasons &reasons) {
  return std::any_of(reasons.begin(), reasons.end(), [](const Reason &reason) { return reason.hinders; });
}

Json reasonJson(const Reason &reason) {
  Json values = Json::object();
  for (const auto &[name, value] : reason.values) values.set(std::string(name), value);
  return Json::object()
      .set("reason", reason.word)
      .set("why", reason.why)
      .set("remedy", reason.remedy)
      .set("text", sentences(reason))
      .set("hinders", reason.hinders)
      .set("other_channel", numberUnlessNone(reason.other))
      .set("collision", reason.collision.empty() ? Json() : Json(reason.collision))
      .set("cause", reason.cause)
      .set("values", std::move(values));
}

}  // namespace usbdevctl
