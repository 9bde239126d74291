// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "explain/explanation.h"

#include <algorithm>

#include "output/numbers.h"
#include "output/printable.h"

namespace usbdevctl {

namespace {

std::string channelName(int channel) { return "ch" + std::to_string(channel); }

/// The attached camera in the port; -1 if there is none.
int attachedAt(const ChannelRows &rows, const std::string &port) {
  for (std::size_t channel = 0; channel < rows.size(); ++channel) {
    if (rows[channel].state == ChannelState::plugged && rows[channel].slot == port) return static_cast<int>(channel);
  }
  return -1;
}

Reason unplugged(const ChannelRow &row, int channel) {
  return reasonFor(Cause::unplugged, {{"port", printable(row.slot)}, {"channel", channelName(channel)}});
}

Reason displaced(const ChannelRows &rows, int channel) {
  const ChannelRow &row = rowOf(rows, channel);
  const int other = attachedAt(rows, row.slot);
  if (other == -1) return reasonFor(Cause::displaced, {{"channel", channelName(channel)}});
  Reason reason = reasonFor(row.profile ? Cause::displaced_with_profile : Cause::displaced_by,
                            {{"camera", cameraText({other, rowOf(rows, other)})},
                             {"profile", numberText(row.profile)},
                             {"other", channelName(other)},
                             {"channel", channelName(channel)}});
  reason.other = other;
  return reason;
}

Reason waits(const ChannelRows &rows, int channel, const Collisions &collisions) {
  const ChannelRow &row = rowOf(rows, channel);
  const int other = *row.parked_behind;
  const Collision collision = collisions[static_cast<std::size_t>(other)];
  Reason reason = reasonFor(Cause::waits, {{"number", std::to_string(other)},
                                           {"camera", cameraText({other, rowOf(rows, other)})},
                                           {"collision", collisionText(collision, row.slot)},
                                           {"cure", rivalRemedy(rows, other, collision)}});
  reason.other = other;
  reason.collision = collisionWord(collision);
  return reason;
}

int firstFreeProfile(const ChannelRows &rows) {
  for (int profile = 0; profile < USBDEV_PROFILES; ++profile) {
    bool used = false;
    for (const ChannelRow &row : rows) used = used || row.profile == profile;
    if (!used) return profile;
  }
  return -1;
}

Reason unbound(const ChannelRows &rows, int channel) {
  const int profile = firstFreeProfile(rows);
  return reasonFor(profile == -1 ? Cause::unbound_and_none_free : Cause::unbound,
                   {{"channel", channelName(channel)}, {"profile", numberText(profile)}});
}

Json withReasons(Json object, bool streams, const Reasons &reasons) {
  Json list = Json::array();
  for (const Reason &reason : reasons) list.append(reasonJson(reason));
  return std::move(object).set("streams", streams).set("reasons", std::move(list));
}

}  // namespace

Reasons explain(const ChannelRows &rows, int channel, const Collisions &collisions,
                const std::optional<Reason> &unsupported, const Reasons &machine) {
  const ChannelRow &row = rowOf(rows, channel);
  Reasons reasons;
  Reasons found = machine;
  if (row.state == ChannelState::displaced) {
    reasons.push_back(displaced(rows, channel));
  } else if (row.state != ChannelState::plugged) {
    reasons.push_back(unplugged(row, channel));
  }
  const auto notices = std::stable_partition(found.begin(), found.end(), [](const Reason &it) { return it.hinders; });
  reasons.insert(reasons.end(), found.begin(), notices);
  if (unsupported) reasons.push_back(*unsupported);
  if (row.parked_behind) reasons.push_back(waits(rows, channel, collisions));
  if (row.slot_switch == false) {
    reasons.push_back(reasonFor(Cause::switched_off, {{"channel", channelName(channel)}}));
  }
  const bool usable =
      row.state == ChannelState::plugged && !unsupported && !std::any_of(found.begin(), notices, hidesCamera);
  if (usable && !row.profile) reasons.push_back(unbound(rows, channel));
  reasons.insert(reasons.end(), notices, found.end());
  return reasons;
}

std::string reasonsText(const Reasons &reasons) {
  std::string text = anyHinders(reasons) ? "" : "  nothing keeps it from streaming\n";
  for (const Reason &reason : reasons) text += "  " + reason.why + "\n    " + reason.remedy + "\n";
  return text;
}

std::string explanationText(const Camera &camera, const Reasons &reasons) {
  return cameraText(camera) + "\n" + reasonsText(reasons);
}

Json explanationJson(const Camera &camera, const Reasons &reasons) {
  Fields members;
  addCameraMembers(members, camera);
  return withReasons(members.addTo(Json::document()), !anyHinders(reasons), reasons);
}

Json channelExplanationJson(const Fields &shown, ChannelState state, const Reasons &reasons) {
  return withReasons(shown.addTo(Json::object()), state != ChannelState::free && !anyHinders(reasons), reasons);
}

}  // namespace usbdevctl
