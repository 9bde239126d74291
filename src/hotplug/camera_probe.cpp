// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "hotplug/camera_probe.h"

#include "core/event_log.h"
#include "core/text.h"
#include "devices/conflicts.h"
#include "devices/formats.h"
#include "devices/identification.h"

namespace usbdev {
namespace {

void fill(_usbdev_conflict &report, int channel, int profile, const char *profilename) {
  report.channel = channel;
  report.profile = profile;
  copyText(report.profilename, profilename);
}

}  // namespace

void probeCamera(HostAnswers &host, const _usbdev_des &device, CameraFindings &findings) {
  _usbfmt_des formats[USBDEV_FORMATS];
  bool over60 = false;
  const int count = listFormats(host, device.node, formats, over60);
  if (over60) {
    logEvent(EventLevel::warning, "Camera[%s %s] has image size over 60 fps. It may cause decode error.",
             device.usbslot, device.devname);
  }
  findings.usable = count > 0;
  char cap[2 * USBDEV_FORMATS + 1] = "";
  for (int i = 0; i < count; ++i) appendNumber(cap, "%d ", formats[i].codec);
  copyText(findings.cap, trim(cap));
  if (!contains(findings.cap, "1")) findings.vcodec = Codec::h264;
  findCameraType(device.node, device.usbslot, findings.fetype);
}

ConflictFindings findConflicts(HostAnswers &host, const ChannelSnapshots &channels, int chosen,
                               const _usbdev_des &device, bool supported, _usbdev_conflict &report) {
  ConflictFindings findings;
  ConflictTest test(host, device.usbslot, device.node);
  for (int i = 0; i < kChannels; ++i) {
    if (i == chosen) continue;
    const ChannelSnapshot &other = channels[i];
    // Intended: The report names the last channel that was looked at.
    copyText(report.devname, other.devname);
    if (!other.hasUnparkedCamera() || !test.conflictsWith(other.usbslot, other.vnode)) continue;
    if (other.profile != kNone) {
      findings.parked_behind = i;
      if (supported) fill(report, i, other.profile, other.profilename);
    } else if (channels[chosen].profile != kNone) {
      findings.parks = i;
      // Intended: This conflict is reported for an unsupported camera too.
      fill(report, chosen, kNone, channels[chosen].profilename);
    }
    break;
  }
  return findings;
}

}  // namespace usbdev
