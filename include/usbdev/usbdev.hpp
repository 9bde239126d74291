/* SPDX-FileCopyrightText: 2026 The libusbdevlib authors
 * SPDX-License-Identifier: Apache-2.0 */

/**
 * @file
 * The interface for C++20: owners, typed enumerations, spans and results in place of pointers and numbers.
 *
 * Each function calls one function of the library, which its comment names and whose own comment describes it. Nothing
 * allocates memory or throws, and it compiles without exceptions. The records are those of <usbdev/records.h>; whatever
 * is not here is called as in C. Texts that are passed may not contain a zero; one that does, or is longer than the
 * function takes, is refused as null is, with -1, and nothing happens.
 */
#ifndef USBDEV_USBDEV_HPP
#define USBDEV_USBDEV_HPP

#include <usbdev/usbdev.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <span>
#include <string_view>
#include <usbdev/owners.hpp>
#include <usbdev/values.hpp>

namespace usbdev {

using ChannelEntries = std::array<_usbdev_entry, USBDEV_CHANNELS>;
using ProfileEntries = std::array<_usbdev_entry, USBDEV_PROFILES>;
using AvailableDevices = std::array<_availinfo, USBDEV_CHANNELS>;
using FormatTable = std::array<_usbfmt_des, USBDEV_FORMATS>;

namespace detail {

template <typename Value>
std::span<const Value> counted(const Value *values, int count, int most) {
  return {values, static_cast<std::size_t>(std::clamp(count, 0, most))};
}

inline std::optional<int> unlessNone(int number) { return number == -1 ? std::nullopt : std::optional(number); }

inline Result<ProfileNumbers> numbers(int (*list)(char *)) {
  Text<16> listed;
  const int result = list(listed.buffer());
  return filled(result, ProfileNumbers(listed.view()));
}

}  // namespace detail

/** @name Formats: the valid entries of a record
 * @{ */
inline std::span<const _usbres_des> sizesOf(const _usbfmt_des &format) {
  return detail::counted(format.res, format.res_count, USBDEV_SIZES);
}
inline std::span<const float> ratesOf(const _usbres_des &size) {
  return detail::counted(size.fps, size.fps_count, USBDEV_RATES);
}
/** @} */

/** @name Listings
 * @{ */

/** vl_get_devpf_list() */
inline Result<ChannelEntries> channels() {
  ChannelEntries rows;
  const int result = vl_get_devpf_list(rows.data());
  return detail::filled(result, rows);
}
/** Whether a row of channels() has a device. */
inline bool hasDevice(const _usbdev_entry &channel) { return channel.usbslot[0] != '\0'; }

/** The channel that the channel of a row waits for. */
inline std::optional<int> waitsFor(const _usbdev_entry &entry) {
  const bool waits = entry.conflictch >= 0 && entry.conflictch < USBDEV_CHANNELS;
  return waits ? std::optional(entry.conflictch) : std::nullopt;
}

/** vl_get_profile_list() */
inline Result<ProfileEntries> profiles() {
  ProfileEntries rows;
  const int result = vl_get_profile_list(rows.data());
  return detail::filled(result, rows);
}
/** Whether a row of profiles() has a channel. */
inline bool isServed(const _usbdev_entry &profile) { return profile.profile != -1; }

/** vl_get_available_dev() */
inline Result<AvailableDevices> availableDevices() {
  AvailableDevices rows;
  const int result = vl_get_available_dev(rows.data());
  return detail::filled(result, rows);
}
/** vl_get_available_profile() */
inline Result<ProfileNumbers> unassignedProfiles() { return detail::numbers(vl_get_available_profile); }
/** vl_get_usbdev_list() */
inline Result<ProfileNumbers> streamingProfiles() { return detail::numbers(vl_get_usbdev_list); }
/** @} */

/** @name Profiles and their streams
 * @{ */

/** vl_set_usbchn_profile() */
inline Status assign(std::string_view slot, int profile) {
  return Status(vl_set_usbchn_profile(Argument<kSlotSize>(slot).get(), profile));
}
/** vl_clear_usbchn_profile(); an empty address is none. */
inline Status clear(int profile, std::string_view client_ip = {}, EventCode event = EventCode::changed) {
  Argument<kAddressSize> address(client_ip);
  if (address.get() == nullptr) return Status(-1);
  return Status(vl_clear_usbchn_profile(profile, client_ip.empty() ? nullptr : address.get(), static_cast<int>(event)));
}
/** vl_set_profile_channelname() */
inline Status rename(int profile, std::string_view name, EventCode event = EventCode::changed) {
  return Status(vl_set_profile_channelname(profile, Argument<kNameSize>(name).get(), static_cast<int>(event)));
}
/** vl_set_usbslot_switch() */
inline Status switchPort(std::string_view slot, bool on) {
  return Status(vl_set_usbslot_switch(Argument<kSlotSize>(slot).get(), on ? "enable" : "disable", nullptr));
}
/** trsProfiletoPlugCh() */
inline Result<int> channelOf(int profile) {
  int channel = 0;
  const int result = trsProfiletoPlugCh(profile, &channel);
  return detail::filled(result, channel);
}
/** vl_get_profileID() */
inline std::optional<int> profileOf(int channel) { return detail::unlessNone(vl_get_profileID(channel)); }

/** vl_get_profile_info() */
inline Result<_profile_info> profileInfo(int profile) {
  _profile_info info = {};
  const int result = vl_get_profile_info(profile, &info);
  return detail::filled(result, info);
}
/** vl_get_stream_info(), with channel -1 */
inline Result<_streaminfo, NoStream> streamInfo(int profile) {
  _streaminfo info = {};
  info.channel = -1;
  const int result = vl_get_stream_info(profile, &info);
  return detail::filled<_streaminfo, NoStream>(result, info);
}
/** vl_set_usbchn_stream() */
inline Status setStream(int profile, _streaminfo wanted, const _streaminfo &before,
                        EventCode event = EventCode::changed) {
  return Status(vl_set_usbchn_stream(profile, &wanted, &before, static_cast<int>(event)));
}
/** findclosedFPS(), for a rate above 0 */
inline Result<float> closestRate(int profile, const _streaminfo &request) {
  float rate = 0;
  const int result = findclosedFPS(profile, &request, &rate);
  return detail::filled(result == 0 && rate == 0 ? -1 : result, rate);
}
/** vl_get_usbchn_cap(); the formats are in the table. */
inline Result<std::span<const _usbfmt_des>> formats(int profile, FormatTable &table) {
  using Formats = std::span<const _usbfmt_des>;
  const int count = vl_get_usbchn_cap(profile, table.data());
  if (count < 0) return Result<Formats>::failure(count);
  return detail::counted(table.data(), count, USBDEV_FORMATS);
}
/** @} */

/** @name Device events and synchronisation, of which only one may run on a host
 * @{ */

/** What mn_set_usbdev_hotplug() did with a device. */
struct Handled {
  int channel = -1;
  std::optional<int> profile;
  Text<kNameSize> removed_name;    /**< of a camera that was removed */
  std::optional<int> removed_node; /**< of a camera that was removed */
  _usbdev_conflict conflict = {};  /**< with channel -1 if the camera conflicts with none */
};

/** mn_set_usbdev_hotplug() */
inline Result<Handled> handleEvent(_usbdev_des &device) {
  Handled handled;
  int profile = -1;
  int node = -1;
  handled.conflict.channel = -1;
  handled.channel = mn_set_usbdev_hotplug(&device, &profile, handled.removed_name.buffer(), &node, &handled.conflict);
  handled.profile = detail::unlessNone(profile);
  handled.removed_node = detail::unlessNone(node);
  if (handled.channel < 0) return Result<Handled>::failure(handled.channel);
  return handled;
}
/** vl_set_devpf_list() */
inline Status startUp() { return Status(vl_set_devpf_list()); }
/** @} */

/** @name Share links
 * @{ */

/** vl_get_share_link() */
inline Result<ShareLinkInfo> shareLink(int profile) {
  ShareLinkInfo link = {};
  link.profile = profile;
  const int result = vl_get_share_link(&link);
  return detail::filled(result, link);
}
/** vl_set_share_link(); an empty password is none. */
inline Result<ShareLinkInfo> setShareLink(int profile, bool enabled, std::string_view password = {}) {
  ShareLinkInfo link = {};
  link.profile = profile;
  link.shrenable = enabled ? 1 : 0;
  link.pwdenable = password.empty() ? 0 : 1;
  Argument<sizeof link.shrpwd> copy(password);
  if (copy.get() == nullptr) return Result<ShareLinkInfo>::failure(-1);
  std::memcpy(link.shrpwd, copy.get(), sizeof link.shrpwd);
  const int result = vl_set_share_link(&link);
  return detail::filled(result, link);
}
/** vl_renew_share_link(); only ssid, token and hash_string are set. */
inline Result<ShareLinkInfo> renewShareLink(int profile) {
  ShareLinkInfo link = {};
  link.profile = profile;
  const int result = vl_renew_share_link(&link);
  return detail::filled(result, link);
}
/** vl_ssid_auth() */
inline Result<int, NotViewable> openedProfile(std::string_view ssid, std::string_view token) {
  int profile = -1;
  int code = 0;
  const int result = vl_ssid_auth(Argument<kSlotSize>(ssid).get(), Argument<kSlotSize>(token).get(), &profile, &code);
  if (result != 0) return Result<int, NotViewable>::failure(static_cast<NotViewable>(code));
  return profile;
}
/** @} */

/** The change notification that the library sends to the manager. */
struct Notification {
  std::array<char, 16> header = {};
  std::int32_t profile = -1;
  std::int32_t video_node = -1;
  std::int32_t audio_node = -1;
  std::int32_t flag = 0;
  std::int32_t event = 0;
  std::int32_t target = -1;

  static constexpr std::size_t kSize = 56;
  static constexpr std::uint16_t kPort = 10171;
  static constexpr std::string_view kMagic = "ORDA_VLM2_CFCG_N";

  /** Decodes a datagram; nothing if it is not a notification. */
  static std::optional<Notification> decode(std::span<const std::byte> datagram) {
    if (datagram.size() != kSize || std::memcmp(datagram.data(), kMagic.data(), kMagic.size()) != 0)
      return std::nullopt;
    Notification result;
    std::memcpy(&result, datagram.data() + kMagic.size(), sizeof result);
    return result;
  }
};
static_assert(sizeof(Notification) + Notification::kMagic.size() == Notification::kSize);

/** vl_settingNotify() */
inline Status notifyManager(const Notification &notification) {
  std::array<char, Notification::kSize> datagram = {};
  Notification::kMagic.copy(datagram.data(), Notification::kMagic.size());
  std::memcpy(datagram.data() + Notification::kMagic.size(), &notification, sizeof notification);
  return Status(vl_settingNotify(datagram.data()));
}

}  // namespace usbdev

#endif
