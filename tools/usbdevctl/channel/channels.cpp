// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "channel/channels.h"

#include <algorithm>

#include "output/numbers.h"
#include "output/printable.h"

namespace usbdevctl {

namespace {

constexpr int kExistsPlugged = 1;
constexpr int kExistsDisplaced = -1;
constexpr int kConflictUnsupported = 999;
constexpr int kSwitchNotStored = -1;

// The availability query leaves the record of a channel that it does not offer all zero; an offered one always has a
// picture size.
bool isOffered(const _availinfo &record) { return record.width != 0 || record.height != 0; }

ChannelState attachedState(int exists) {
  if (exists == kExistsPlugged) return ChannelState::plugged;
  return exists == kExistsDisplaced ? ChannelState::displaced : ChannelState::unplugged;
}

// A displaced channel shares its slot with the camera that took its port, and has no node any more.
std::optional<int> videoNode(const ChannelListings &listings, std::size_t channel) {
  if (listings.devices[channel].exists == kExistsDisplaced) return std::nullopt;
  if (isOffered(listings.available[channel])) return numberUnlessNone(listings.available[channel].vnode);
  const _streaminfo &slot = listings.slots[channel];
  return slot.channel == static_cast<int>(channel) ? numberUnlessNone(slot.vnode) : std::nullopt;
}

bool isProfile(int profile) { return profile >= 0 && profile < USBDEV_PROFILES; }

ChannelRow fromAvailable(const _availinfo &record) {
  ChannelRow row;
  row.slot = fieldText(record.usbslot);
  row.device = fieldText(record.devname);
  row.video_node = numberUnlessNone(record.vnode);
  row.state = row.slot.empty() ? ChannelState::free : ChannelState::unplugged;
  return row;
}

ChannelRow describe(const ChannelListings &listings, std::size_t channel) {
  const int profile = listings.profile_ids[channel];
  if (listings.devices[channel].exists != 0) {
    ChannelRow row = channelRow(listings.devices[channel]);
    row.video_node = videoNode(listings, channel);
    return row;
  }
  if (isProfile(profile)) return channelRow(listings.profiles[static_cast<std::size_t>(profile)]);
  if (isOffered(listings.available[channel])) return fromAvailable(listings.available[channel]);
  ChannelRow row;
  row.profile = numberUnlessNone(profile);
  return row;
}

Style stateStyle(ChannelState state) {
  if (state == ChannelState::plugged) return Style::good;
  return state == ChannelState::displaced ? Style::notice : Style::plain;
}

Cell conflictCell(const ChannelRow &row) {
  if (!row.supported) return {"unsupported", Style::bad};
  if (row.parked_behind) return {"waits for " + std::to_string(*row.parked_behind), Style::notice};
  if (!row.trouble) return {};
  return {row.trouble->in_short, row.trouble->hinders ? Style::bad : Style::notice};
}

/// The name of what the conflict column shows.
Json conflictName(const ChannelRow &row) {
  if (!row.supported) return "unsupported";
  if (row.parked_behind) return "waits";
  return row.trouble ? Json(row.trouble->word) : Json();
}

Cell profileCell(const ChannelRow &row) {
  if (!row.profile) return {};
  const std::string number = std::to_string(*row.profile);
  return {row.profile_name.empty() ? number : number + " " + printable(row.profile_name)};
}

Field slotSwitch(const ChannelRow &row) {
  Field field = headed("switch", switchField("slot_switch", row.slot_switch));
  if (row.slot_switch == false) field.cell.style = Style::notice;
  return field;
}

}  // namespace

ChannelRow channelRow(const _usbdev_entry &entry) {
  ChannelRow row;
  row.state = attachedState(entry.exists);
  row.slot = fieldText(entry.usbslot);
  row.device = fieldText(entry.devname);
  row.profile = numberUnlessNone(entry.profile);
  row.profile_name = fieldText(entry.profilename);
  if (entry.slot_switch != kSwitchNotStored) row.slot_switch = entry.slot_switch != 0;
  row.supported = entry.conflictch != kConflictUnsupported;
  if (row.supported) row.parked_behind = numberUnlessNone(entry.conflictch);
  row.created = fieldText(entry.createtime);
  return row;
}

const char *stateName(ChannelState state) {
  switch (state) {
    case ChannelState::plugged:
      return "plugged";
    case ChannelState::unplugged:
      return "unplugged";
    case ChannelState::displaced:
      return "displaced";
    case ChannelState::free:
      break;
  }
  return "free";
}

std::string streamLackText(const ChannelRow &row) {
  if (row.state != ChannelState::plugged) return std::string("it is ") + stateName(row.state);
  if (!row.supported) return "it is not supported";
  if (row.parked_behind) return "it waits for channel " + std::to_string(*row.parked_behind);
  return row.slot_switch == false ? "its port is switched off" : "";
}

bool streams(const ChannelRow &row) { return row.profile && streamLackText(row).empty(); }

CameraPlace placeOf(const ChannelRow &row) {
  const bool attached = row.state == ChannelState::plugged;
  return {row.slot, attached ? row.video_node : std::nullopt, row.profile, attached, streams(row)};
}

ChannelRows describeChannels(const ChannelListings &listings) {
  ChannelRows rows;
  for (std::size_t channel = 0; channel < rows.size(); ++channel) rows[channel] = describe(listings, channel);
  return rows;
}

Field portField(const std::string &slot) { return whole(headed("port", textField("slot", slot))); }

void addIdentity(Fields &fields, std::size_t channel, const ChannelRow &row) {
  fields.add(numberField("channel", static_cast<int>(channel)))
      .add(wordField("state", stateName(row.state), stateStyle(row.state)))
      .add(portField(row.slot))
      .add(textField("device", row.device));
}

void addStanding(Fields &fields, const ChannelRow &row) {
  fields.add(shrinking(forPeople("profile", profileCell(row))))
      .add(forPrograms("profile", row.profile))
      .add(forPrograms("profile_name", row.profile_name))
      .add(slotSwitch(row))
      .add(forPeople("conflict", conflictCell(row)))
      .add(forPrograms("parked_behind", row.parked_behind))
      .add(forPrograms("supported", row.supported))
      .add(forPrograms("reason", conflictName(row)))
      .add(whole(textField("created", row.created)));
}

FieldRows channelFields(const ChannelRows &rows) {
  FieldRows fields(rows.size());
  for (std::size_t channel = 0; channel < rows.size(); ++channel) {
    addIdentity(fields[channel], channel, rows[channel]);
    fields[channel].add(headed("video", numberField("video_node", rows[channel].video_node)));
    addStanding(fields[channel], rows[channel]);
  }
  return fields;
}

}  // namespace usbdevctl
