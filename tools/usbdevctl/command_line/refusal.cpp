// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "command_line/refusal.h"

#include "output/numbers.h"
#include "output/output.h"

namespace usbdevctl {

namespace {

Json refusedJson(const Refusals &refusals) {
  Json list = Json::array();
  for (const Refusal &refusal : refusals) {
    list.append(Json::object()
                    .set("reason", refusal.reason)
                    .set("other_channel", numberUnlessNone(refusal.other))
                    .set("collision", refusal.collision.empty() ? Json() : Json(refusal.collision))
                    .set("why", refusal.why));
  }
  return Json::document().set("refusals", std::move(list));
}

}  // namespace

ExitStatus refuse(const Refusals &refusals, bool json) {
  for (const Refusal &refusal : refusals) complain(refusal.why);
  if (json) print(refusedJson(refusals).text());
  return ExitStatus::failure;
}

}  // namespace usbdevctl
