// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "profile/channel_release.h"

#include <platform/xmlcfg.h>
#include <usbdev/devices.h>
#include <usbdev/profiles.h>
#include <usbdev/web.h>

#include "channel/channel_reset.h"
#include "events/event_codes.h"

namespace usbdevctl {

namespace {

constexpr int kHandOver = 0;  // the mode in which a port is handed over

std::string section(int channel) { return "ch" + std::to_string(channel); }

/// The configuration, which no other process writes until it is closed.
class WritableConfiguration {
 public:
  WritableConfiguration() : open_(xmlcfg_open(1, kConfigurationFile, &handle_) == 1) {}
  ~WritableConfiguration() { close(); }
  WritableConfiguration(const WritableConfiguration &) = delete;
  WritableConfiguration &operator=(const WritableConfiguration &) = delete;

  bool isOpen() const { return open_; }

  /// Whether the channel still keeps the place of this camera, and of no attached one.
  bool keepsAwayCamera(const Camera &camera) const {
    char port[sizeof(_usbdev_des::usbslot) + 1] = {};  // the host may leave it unterminated
    const std::string name = section(camera.channel);
    xmlcfg_get_str(handle_, "", port, sizeof port - 1, kConfigurationRoot, name.c_str(), "usbslot", nullptr);
    return camera.row.slot == port &&
           xmlcfg_get_int(handle_, 0, kConfigurationRoot, name.c_str(), "exists", nullptr) != 1;
  }

  void reset(int channel) {
    const std::string name = section(channel);
    for (const ResetKey &key : resetKeys()) {
      if (key.text != nullptr) {
        xmlcfg_set_str(handle_, key.text, kConfigurationRoot, name.c_str(), key.key, key.sub_key);
      } else {
        xmlcfg_set_int(handle_, key.number, kConfigurationRoot, name.c_str(), key.key, key.sub_key);
      }
    }
  }

  /// Stores what was written; false when that fails.
  bool close() {
    if (!open_) return false;
    open_ = false;
    return xmlcfg_close(handle_, 0) >= 0;
  }

 private:
  void *handle_ = nullptr;
  bool open_;
};

/// Lets go of what the channel has outside its own keys: its links, and the cameras that wait for it.
bool letGo(const Camera &camera) {
  if (camera.row.profile) return vl_clear_usbchn_profile(*camera.row.profile, nullptr, kEventCleared) == 0;
  int successor = 0;
  return remove_hash_link(section(camera.channel).c_str()) == 0 &&
         updateConflict(camera.channel, -1, kHandOver, &successor) == 0;
}

}  // namespace

bool releaseChannel(const Camera &camera, std::string &wrong) {
  if (!letGo(camera)) {
    wrong = "its profile could not be cleared";
    return false;
  }
  const std::string unbound = camera.row.profile ? "its profile was cleared, but " : "";
  WritableConfiguration configuration;
  if (!configuration.isOpen()) {
    wrong = unbound + "the channel configuration cannot be written";
    return false;
  }
  if (!configuration.keepsAwayCamera(camera)) {
    wrong = unbound + "its channel has another camera now, or its own was attached";
    return false;
  }
  configuration.reset(camera.channel);
  if (configuration.close()) return true;
  wrong = unbound + "the channel configuration could not be stored";
  return false;
}

}  // namespace usbdevctl
