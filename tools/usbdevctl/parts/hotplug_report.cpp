#include "parts/hotplug_report.h"

#include "output/printable.h"
#include "parts/numbers.h"

namespace usbdevctl {

namespace {

std::string labelled(const std::string &label, const std::string &text) {
  constexpr std::size_t kLabelWidth = 12;
  std::string padded = label;
  padded.resize(kLabelWidth, ' ');
  return padded + text + '\n';
}

// The two ways in which a new camera collides: it waits behind a channel that streams, or, having a profile itself, it
// makes the other one wait.
bool isParked(const HotplugOutcome &outcome) { return outcome.conflict.channel != outcome.channel; }

std::string conflictText(const HotplugOutcome &outcome) {
  const _usbdev_conflict &conflict = outcome.conflict;
  if (!numberUnlessNone(conflict.channel)) return "none";
  if (!isParked(outcome)) return "another camera at this root port now waits behind this channel";
  return "waits behind channel " + std::to_string(conflict.channel) + " (profile " + numberText(conflict.profile) +
         ", \"" + printable(fieldText(conflict.profilename)) + "\")";
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

std::string commonText(const HotplugOutcome &outcome) {
  return labelled("channel", numberText(outcome.channel)) + labelled("profile", numberText(outcome.profile));
}

Json commonJson(const HotplugOutcome &outcome) {
  return Json::document()
      .set("channel", numberUnlessNone(outcome.channel))
      .set("profile", numberUnlessNone(outcome.profile));
}

}  // namespace

std::string plugText(const HotplugOutcome &outcome) {
  return commonText(outcome) + labelled("conflict", conflictText(outcome));
}

Json plugJson(const HotplugOutcome &outcome) { return commonJson(outcome).set("conflict", conflictJson(outcome)); }

std::string unplugText(const HotplugOutcome &outcome) {
  return commonText(outcome) + labelled("device", printable(fieldText(outcome.device))) +
         labelled("video node", numberText(outcome.video_node));
}

Json unplugJson(const HotplugOutcome &outcome) {
  return commonJson(outcome)
      .set("device", fieldText(outcome.device))
      .set("video_node", numberUnlessNone(outcome.video_node));
}

}  // namespace usbdevctl
