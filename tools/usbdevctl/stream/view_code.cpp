// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "stream/view_code.h"

#include <array>

namespace usbdevctl {

namespace {

struct ViewReason {
  int code;
  const char *text;
};

constexpr std::array<ViewReason, 8> kReasons = {{
    {9000, "the token is another one"},
    {9001, "the device is not attached"},
    {9003, "there is no video"},
    {9004, "there is sound only"},
    {9007, "the device waits for another one, or is unsupported"},
    {9009, "the slot is switched off"},
    {9010, "sharing is off"},
    {kUnknownShareId, "no profile has this share id"},
}};

Cell viewCell(std::optional<int> code) {
  if (!code) return {};
  return *code == kViewOpens ? Cell{"yes", Style::good} : Cell{"no, " + viewReason(*code), Style::notice};
}

}  // namespace

std::string viewReason(int code) {
  for (const ViewReason &reason : kReasons) {
    if (reason.code == code) return reason.text;
  }
  return "code " + std::to_string(code);
}

void addView(Fields &fields, const std::string &heading, const std::string &member, std::optional<int> code) {
  const bool refused = code && *code != kViewOpens;
  fields.add(shrinking(forPeople(heading, viewCell(code))));
  fields.add(forPrograms(member, code ? Json(!refused) : Json()));
  fields.add(forPrograms("code", refused ? Json(*code) : Json()));
  fields.add(forPrograms("reason", refused ? Json(viewReason(*code)) : Json()));
}

}  // namespace usbdevctl
