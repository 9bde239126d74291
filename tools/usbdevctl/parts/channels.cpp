#include "parts/channels.h"

#include <algorithm>

#include "output/printable.h"
#include "parts/numbers.h"

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

ChannelRow fromEntry(const _usbdev_entry &entry) {
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

// A displaced channel shares its slot with the camera that took its port, and its node is gone.
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
    ChannelRow row = fromEntry(listings.devices[channel]);
    row.video_node = videoNode(listings, channel);
    return row;
  }
  if (isProfile(profile)) return fromEntry(listings.profiles[static_cast<std::size_t>(profile)]);
  if (isOffered(listings.available[channel])) return fromAvailable(listings.available[channel]);
  ChannelRow row;
  row.profile = numberUnlessNone(profile);
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

Style stateStyle(ChannelState state) {
  if (state == ChannelState::plugged) return Style::good;
  return state == ChannelState::displaced ? Style::notice : Style::plain;
}

std::string orDash(const std::string &text) { return text.empty() ? "-" : printable(text); }

std::string orDash(std::optional<int> number) { return number ? std::to_string(*number) : "-"; }

Cell switchCell(const ChannelRow &row) {
  if (!row.slot_switch) return {"-"};
  return *row.slot_switch ? Cell{"on"} : Cell{"off", Style::notice};
}

Cell conflictCell(const ChannelRow &row) {
  if (!row.supported) return {"unsupported", Style::bad};
  if (!row.parked_behind) return {"-"};
  return {"parked behind " + std::to_string(*row.parked_behind), Style::notice};
}

std::string profileText(const ChannelRow &row) {
  if (!row.profile || row.profile_name.empty()) return orDash(row.profile);
  return std::to_string(*row.profile) + " " + printable(row.profile_name);
}

Json rowJson(std::size_t channel, const ChannelRow &row) {
  return Json::object()
      .set("channel", static_cast<int>(channel))
      .set("state", stateName(row.state))
      .set("slot", row.slot)
      .set("device", row.device)
      .set("video_node", row.video_node)
      .set("profile", row.profile)
      .set("profile_name", row.profile_name)
      .set("slot_switch", row.slot_switch)
      .set("parked_behind", row.parked_behind)
      .set("supported", row.supported)
      .set("created", row.created);
}

}  // namespace

ChannelRows describeChannels(const ChannelListings &listings) {
  ChannelRows rows;
  for (std::size_t channel = 0; channel < rows.size(); ++channel) rows[channel] = describe(listings, channel);
  return rows;
}

Table channelTable(const ChannelRows &rows) {
  Table table({{"CHANNEL", Align::right},
               {"STATE"},
               {"SLOT"},
               {"DEVICE"},
               {"VIDEO", Align::right},
               {"PROFILE"},
               {"SWITCH"},
               {"CONFLICT"},
               {"CREATED"}});
  for (std::size_t channel = 0; channel < rows.size(); ++channel) {
    const ChannelRow &row = rows[channel];
    table.addRow({{std::to_string(channel)},
                  {stateName(row.state), stateStyle(row.state)},
                  {orDash(row.slot)},
                  {orDash(row.device)},
                  {orDash(row.video_node)},
                  {profileText(row)},
                  switchCell(row),
                  conflictCell(row),
                  {orDash(row.created)}});
  }
  return table;
}

Json channelJson(const ChannelRows &rows) {
  Json channels = Json::array();
  for (std::size_t channel = 0; channel < rows.size(); ++channel) channels.append(rowJson(channel, rows[channel]));
  return Json::document().set("channels", std::move(channels));
}

}  // namespace usbdevctl
