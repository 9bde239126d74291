// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "profile/profiles.h"

#include "channel/channels.h"
#include "output/printable.h"
#include "stream/stream_text.h"

namespace usbdevctl {

namespace {

/// The first reason for which the profile cannot stream.
Field stateField(const ChannelRow &row) {
  if (!row.profile) return wordField("state", "unbound");
  if (row.state != ChannelState::plugged) return wordField("state", stateName(row.state), Style::notice);
  if (!row.supported) return wordField("state", "unsupported", Style::bad);
  if (row.parked_behind) return wordField("state", "parked", Style::notice);
  if (row.slot_switch == false) return wordField("state", "switched off", Style::notice);
  return wordField("state", "ready", Style::good);
}

Json linkJson(const LiveLink &link) {
  if (link.state == LinkState::none) return {};
  return Json::object().set("path", link.path).set("target", link.target).set("state", linkStateName(link.state));
}

Fields fieldsOf(int number, const Profile &profile) {
  const bool bound = profile.entry.profile == number;
  const ChannelRow row = bound ? channelRow(profile.entry) : ChannelRow();
  return Fields()
      .add(numberField("profile", number))
      .add(textField("name", row.profile_name))
      .add(textField("camera", row.device))
      .add(portField(row.slot))
      .add(streamField(profile.entry.stream_type))
      .add(stateField(row))
      .add(forPrograms("parked_behind", row.parked_behind))
      .add(shrinking(forPeople("link", {printable(fieldText(profile.entry.hlspath))})))
      .add(shrinking(forPeople("leads to", linkCell(profile.link))))
      .add(forPrograms("link", linkJson(profile.link)));
}

}  // namespace

FieldRows profileFields(const Profiles &profiles) {
  FieldRows rows;
  for (const Profile &profile : profiles) rows.push_back(fieldsOf(static_cast<int>(rows.size()), profile));
  return rows;
}

}  // namespace usbdevctl
