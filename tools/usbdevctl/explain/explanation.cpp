// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "explain/explanation.h"

#include "output/numbers.h"
#include "output/printable.h"

namespace usbdevctl {

namespace {

std::string channelName(int channel) { return "ch" + std::to_string(channel); }

std::string forgetRemedy(int channel) { return "'usbdevctl forget " + channelName(channel) + "' frees the channel"; }

/// The attached camera in the port; -1 if there is none.
int attachedAt(const ChannelRows &rows, const std::string &port) {
  for (std::size_t channel = 0; channel < rows.size(); ++channel) {
    if (rows[channel].state == ChannelState::plugged && rows[channel].slot == port) return static_cast<int>(channel);
  }
  return -1;
}

Reason unplugged(const ChannelRow &row, int channel) {
  return {"unplugged", "it is not attached",
          "plug it into port " + printable(row.slot) + " again, or " + forgetRemedy(channel)};
}

Reason displaced(const ChannelRows &rows, int channel) {
  const ChannelRow &row = rowOf(rows, channel);
  const int other = attachedAt(rows, row.slot);
  if (other == -1) return {"displaced", "another camera was put into its port", forgetRemedy(channel)};
  const std::string move = row.profile ? "'usbdevctl move " + std::to_string(*row.profile) + " " + channelName(other) +
                                             "' gives that one its profile, or "
                                       : "";
  return {"displaced", "another camera is in its port: " + cameraText({other, rowOf(rows, other)}),
          move + forgetRemedy(channel), other};
}

Reason waits(const ChannelRows &rows, int channel, const Collisions &collisions) {
  const ChannelRow &row = rowOf(rows, channel);
  const int other = *row.parked_behind;
  const Collision collision = collisions[static_cast<std::size_t>(other)];
  return {"waits",
          "it waits for " + cameraText({other, rowOf(rows, other)}) + " (" + collisionText(collision, row.slot) + ")",
          rivalRemedy(rows, other, collision), other, collision};
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
  return {"unbound", "it has no profile",
          profile == -1
              ? "every profile has a camera: 'usbdevctl move PROFILE " + channelName(channel) + "' moves one to it"
              : "'usbdevctl assign " + channelName(channel) + " " + std::to_string(profile) + "' assigns one"};
}

Json reasonJson(const Reason &reason) {
  const std::string collision = collisionWord(reason.collision);
  return Json::object()
      .set("reason", reason.word)
      .set("why", reason.why)
      .set("remedy", reason.remedy)
      .set("other_channel", numberUnlessNone(reason.other))
      .set("collision", collision.empty() ? Json() : Json(collision));
}

}  // namespace

Reasons explain(const ChannelRows &rows, int channel, const Collisions &collisions,
                const std::optional<Reason> &unsupported) {
  const ChannelRow &row = rowOf(rows, channel);
  Reasons reasons;
  if (row.state == ChannelState::displaced) {
    reasons.push_back(displaced(rows, channel));
  } else if (row.state != ChannelState::plugged) {
    reasons.push_back(unplugged(row, channel));
  }
  if (unsupported) reasons.push_back(*unsupported);
  if (row.parked_behind) reasons.push_back(waits(rows, channel, collisions));
  if (row.slot_switch == false) {
    reasons.push_back({"switched_off", "its port is switched off",
                       "'usbdevctl slot on " + channelName(channel) + "' switches it on"});
  }
  const bool usable = row.state == ChannelState::plugged && !unsupported;
  if (usable && !row.profile) reasons.push_back(unbound(rows, channel));
  return reasons;
}

std::string explanationText(const Camera &camera, const Reasons &reasons) {
  std::string text = cameraText(camera) + "\n";
  if (reasons.empty()) return text + "  nothing keeps it from streaming\n";
  for (const Reason &reason : reasons) text += "  " + reason.why + "\n    " + reason.remedy + "\n";
  return text;
}

Json explanationJson(const Camera &camera, const Reasons &reasons) {
  Json list = Json::array();
  for (const Reason &reason : reasons) list.append(reasonJson(reason));
  Fields members;
  addCameraMembers(members, camera);
  return members.addTo(Json::document()).set("streams", reasons.empty()).set("reasons", std::move(list));
}

}  // namespace usbdevctl
