// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "settings/settings_access.h"

#include <usbdev/devices.h>
#include <usbdev/profiles.h>
#include <usbdev/web.h>

#include "events/event_codes.h"
#include "explain/collision_query.h"
#include "format/format_query.h"
#include "output/output.h"
#include "output/printable.h"
#include "profile/channel_release.h"
#include "stream/channel_links.h"
#include "stream/stream_notice.h"

namespace usbdevctl {

namespace {

ShareLinkInfo shareOf(int profile) {
  ShareLinkInfo link = {};
  link.profile = profile;
  return link;
}

/// The stored stream of a profile, whether or not it can stream now, and what else is stored of it.
bool readRecord(int profile, _streaminfo &record, _profile_info &info) {
  if (vl_get_profile_info(profile, &info) != 0) return false;
  record = {};
  if (vl_get_stream_info(profile, &record) == 0) {
    record.stream_type = info.stream_type;  // which counts sound that is off, too
    return true;
  }
  record.stream_type = info.stream_type;
  record.vnode = info.vnode;
  record.vcodec = info.vcodec;
  record.width = info.width;
  record.height = info.height;
  record.framerate = info.framerate;
  record.osdenable = info.osdenable;
  record.flip = info.flip;
  record.mirror = info.mirror;
  record.ldspoutput = info.ldspoutput;
  record.aenable = info.aenable;
  record.acodec = info.acodec;
  record.volume = info.volume;
  return true;
}

bool setStream(const ProfileSettings &settings) {
  _streaminfo before;
  _profile_info info;
  if (!readRecord(settings.profile, before, info)) return false;
  _streaminfo wanted = changed(before, settings.stream);
  // Its result may be that of the notification, so what is stored is asked for.
  vl_set_usbchn_stream(settings.profile, &wanted, &before, kLogChangesOnly);
  _streaminfo stored;
  if (!readRecord(settings.profile, stored, info) || !notStored(stored, settings.stream).empty()) return false;
  return !settings.stream.rate || sameRate(stored.framerate, *settings.stream.rate);
}

bool setShare(const ProfileSettings &settings) {
  ShareLinkInfo link = shareOf(settings.profile);
  const std::string &password = settings.share.password;
  link.shrenable = settings.share.enabled ? 1 : 0;
  link.pwdenable = password.empty() ? 0 : 1;
  link.shrpwd[password.copy(link.shrpwd, sizeof link.shrpwd - 1)] = '\0';
  return vl_set_share_link(&link) == 0;
}

bool release(const Camera &camera) {
  Camera unbound = camera;
  unbound.row.profile.reset();
  std::string wrong;
  const bool released = releaseChannel(unbound, wrong);
  if (!released) complain(wrong);
  return released;
}

bool apply(const Step &step) {
  std::string port = step.camera.row.slot;
  const int profile = step.settings.profile;
  switch (step.kind) {
    case Step::Kind::clear:
      return vl_clear_usbchn_profile(profile, nullptr, kEventCleared) == 0;
    case Step::Kind::forget:
      return release(step.camera);
    case Step::Kind::bind:
      return vl_set_usbchn_profile(port.data(), profile) == 0;
    case Step::Kind::rename:
      return vl_set_profile_channelname(profile, step.settings.name.c_str(), kLogChangesOnly) == 0;
    case Step::Kind::stream:
      return setStream(step.settings);
    case Step::Kind::share:
      return setShare(step.settings);
    case Step::Kind::port_on:
      return vl_set_usbslot_switch(port.c_str(), "enable", nullptr) == 0;
    case Step::Kind::port_off:
      return vl_set_usbslot_switch(port.c_str(), "disable", nullptr) == 0;
  }
  return false;
}

}  // namespace

std::optional<ProfileSettings> readProfileSettings(int profile) {
  _streaminfo record;
  _profile_info info;
  ShareLinkInfo link = shareOf(profile);
  if (!readRecord(profile, record, info) || vl_get_share_link(&link) != 0) return std::nullopt;
  ProfileSettings settings;
  settings.profile = profile;
  settings.name = fieldText(info.profilename);
  settings.stream = allSettings(record);
  settings.share = {link.shrenable != 0, link.pwdenable != 0 ? fieldText(link.shrpwd) : ""};
  return settings;
}

CameraFacts readFacts(const ChannelRows &rows, const Camera &camera) {
  CameraFacts facts;
  facts.camera = camera;
  facts.collisions = readCollisions(rows, camera.channel);
  if (camera.row.video_node) facts.formats = readFormats(*camera.row.video_node);
  if (camera.row.profile) facts.current = readProfileSettings(*camera.row.profile);
  return facts;
}

Applied applySteps(const std::vector<Step> &steps) {
  Applied applied;
  for (const Step &step : steps) {
    const ChannelLinks links = linksOf(step.camera.channel);
    if (!apply(step)) break;
    ++applied.steps;
    if (linksFollowed(step.camera.channel, links) != ExitStatus::ok) applied.links = ExitStatus::failure;
  }
  // Last, so that no stream begins with settings that are changed next.
  for (std::size_t i = 0; i < applied.steps; ++i) {
    if (steps[i].kind == Step::Kind::bind) notifyOfStream(steps[i].settings.profile);
  }
  return applied;
}

}  // namespace usbdevctl
