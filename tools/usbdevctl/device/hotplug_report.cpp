// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "device/hotplug_report.h"

#include "output/numbers.h"
#include "output/printable.h"

namespace usbdevctl {

namespace {

// The two ways in which a new camera conflicts with another: it waits for a channel that streams, or, having a profile
// itself, it makes the other one wait.
bool isParked(const HotplugOutcome &outcome) { return outcome.conflict.channel != outcome.channel; }

std::string conflictText(const HotplugOutcome &outcome, const Camera &other) {
  const _usbdev_conflict &conflict = outcome.conflict;
  if (!numberUnlessNone(conflict.channel)) return "";
  if (!isParked(outcome)) return "another camera at this root port now waits for this channel";
  return "waits for " + cameraText(other);
}

Json conflictJson(const HotplugOutcome &outcome) {
  const _usbdev_conflict &conflict = outcome.conflict;
  if (!numberUnlessNone(conflict.channel)) return {};
  return Json::object()
      .set("channel", conflict.channel)
      .set("profile", numberUnlessNone(conflict.profile))
      .set("profile_name", fieldText(conflict.profilename))
      .set("parked", isParked(outcome));
}

Fields chosen(const HotplugOutcome &outcome) {
  return Fields()
      .add(numberField("channel", numberUnlessNone(outcome.channel)))
      .add(numberField("profile", numberUnlessNone(outcome.profile)));
}

}  // namespace

Fields plugReport(const HotplugOutcome &outcome, const Camera &other) {
  return chosen(outcome)
      .add(forPeople("conflict", {conflictText(outcome, other)}))
      .add(forPrograms("conflict", conflictJson(outcome)));
}

Fields unplugReport(const HotplugOutcome &outcome) {
  return chosen(outcome)
      .add(textField("device", fieldText(outcome.device)))
      .add(numberField("video_node", numberUnlessNone(outcome.video_node)));
}

}  // namespace usbdevctl
