#include <usbdev/hotplug.h>
#include <usbdev/profiles.h>

#include <algorithm>

#include "core/change_notification.h"
#include "core/config.h"
#include "core/text.h"
#include "devices/conflicts.h"
#include "hotplug/codec_check.h"
#include "hotplug/device_scan.h"
#include "hotplug/handler.h"

namespace usbdev {
namespace {

struct Records {
  _usbdev_update list[kChannels];

  Records() {
    for (_usbdev_update &record : list) {
      record = {};
      record.vnode = record.anode = record.state = record.slot_switch = record.profile = -1;
    }
  }
};

void readRecord(const Section &channel, _usbdev_update &record) {
  const int exists = channel.get(keys::exists, -1);
  if (exists == -1) return;
  record.state = exists;
  record.slot_switch = channel.get(keys::slot_switch);
  record.profile = channel.get(keys::profile);
  channel.get(keys::hlspath, record.hlspath);
  if (channel.get(keys::shrenable) != 0) channel.get(keys::hash_string, record.hash);
}

void plug(HostAnswers &host, int devtype, int node, const _usbdev_update &record, const char *name) {
  _usbdev_des device{};
  device.devtype = devtype;
  device.node = node;
  copyText(device.usbslot, record.usbslot);
  device.plugged = 1;
  copyText(device.devname, name);
  int profile = kNone;
  char devname[256];
  int vnode = kNone;
  _usbdev_conflict conflict;
  handleHotplug(host, {&device, &profile, devname, &vnode, &conflict});
}

/// A card without a name of its own takes that of the new camera in its port.
const char *nameOfCard(const _usbdev_update &card, int camera_count, const _usbdev_update *cameras) {
  if (card.devname[0] != '\0') return card.devname;
  for (int i = 0; i < camera_count; ++i) {
    if (isSame(cameras[i].usbslot, card.usbslot)) return cameras[i].devname;
  }
  return card.devname;
}

void plugNewDevices(HostAnswers &host, int camera_count, const _usbdev_update *cameras, int card_count,
                    const _usbdev_update *cards) {
  for (int i = 0; i < camera_count; ++i) plug(host, 1, cameras[i].vnode, cameras[i], cameras[i].devname);
  for (int i = 0; i < card_count; ++i) {
    plug(host, 0, cards[i].anode, cards[i], nameOfCard(cards[i], camera_count, cameras));
  }
}

/// Must the channel give its profile up on a host that serves one channel only?
bool holdsLaterProfile(const _usbdev_update &record) {
  return record.state != -1 && record.profile != kNone && record.profile != 0;
}

int countLaterProfiles(const _usbdev_update (&records)[kChannels]) {
  int count = 0;
  for (const _usbdev_update &record : records) count += holdsLaterProfile(record) ? 1 : 0;
  return count;
}

int synchronise(HostAnswers &host) {
  Records channels;
  int result = -1;
  {
    const ConfigReader config;
    if (!config) return -1;
    result = config.openResult();
    for (int i = 0; i < kChannels; ++i) readRecord(config.channel(i), channels.list[i]);
  }
  int conflict_map[kChannels];
  for (int &code : conflict_map) code = -1;
  Records cameras;
  Records cards;
  int camera_count = 0;
  int card_count = 0;
  // Each step runs whatever the earlier ones returned.
  findCameras(host, channels.list, conflict_map, &camera_count, cameras.list);
  get_conf_audioinfo(channels.list, conflict_map, &card_count, cards.list, camera_count, cameras.list);
  update_usbinfo(channels.list);
  ConflictTasks tasks;
  for (int i = 0; i < kChannels; ++i) tasks[i] = ConflictTask{conflict_map[i]};
  recomputeConflicts(host, tasks);
  plugNewDevices(host, camera_count, cameras.list, card_count, cards.list);
  if (countLaterProfiles(channels.list) > 0 && host.isOneChannelLimited()) rmNone1stProfile(channels.list);
  return result;
}

}  // namespace
}  // namespace usbdev

using namespace usbdev;

int vl_set_devpf_list(void) {
  HostAnswers host;
  checkCodecs(host);
  synchronise(host);
  return 0;
}

int mn_sync_usbdev_conf(void) {
  HostAnswers host;
  return synchronise(host);
}

int sync_usbdev(int new_camera_count, _usbdev_update *new_cameras, int new_card_count, _usbdev_update *new_cards) {
  if ((new_cameras == nullptr && new_camera_count > 0) || (new_cards == nullptr && new_card_count > 0)) return 0;
  HostAnswers host;
  plugNewDevices(host, std::min(new_camera_count, kNewDevices), new_cameras, std::min(new_card_count, kNewDevices),
                 new_cards);
  return 0;
}

int rmNone1stProfile(_usbdev_update *channels) {
  if (channels == nullptr) return 0;
  for (int i = 0; i < kChannels; ++i) {
    if (holdsLaterProfile(channels[i]))
      vl_clear_usbchn_profile(channels[i].profile, nullptr, static_cast<int>(EventCode::one_channel_host));
  }
  return 0;
}
