// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "web/streaming_status.h"

#include <sys/stat.h>

#include <cstdio>
#include <cstring>

#include "core/config.h"
#include "core/host_queries.h"
#include "core/lines.h"
#include "core/profile_mapping.h"
#include "core/text.h"
#include "devices/identification.h"
#include "web/links.h"
#include "web/stream_socket.h"

namespace usbdev {
namespace {

constexpr IntKey kAvailable{"available", nullptr, 0};
// Intended: Unused bytes are the character 0.
constexpr int kUnused = 0x30;
constexpr int kStreamingPort = 10170;

sockaddr_in streamingService() {
  sockaddr_in address;
  std::memset(&address, kUnused, sizeof address);
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_ANY);
  address.sin_port = htons(kStreamingPort);
  return address;
}

}  // namespace

bool hasPlaylist(int profile) {
  char installed[kPackageTextSize];
  if (!askPackageRegistry("Velmora2", "Install_Path", installed)) {
    copyText(installed, "/share/CACHEDEV1_DATA/.bndl/velmora2");
  }
  char playlist[192];
  // Intended: The profile is not checked.
  formatText(playlist, "%s/%s/channel%d/playlist.m3u8", installed, "web/hls", streamNumber(profile));
  struct stat found;
  return stat(playlist, &found) == 0;
}

bool sendStreamSignal(const StreamSignal &signal) {
  const StreamSocket service(
      streamingService(), {stderr, "StreamNotify -- Could not create socket.\n", "StreamNotify -- Connect Failed.\n"});
  if (!service) return false;
  if (service.sendBytes(signal, sizeof signal) >= 0) return true;
  std::fputs("StreamNotify -- Send Error.\n", stderr);
  return false;
}

bool isSourceRunning(int number, StreamSource source) {
  // Intended: The process of node 10 is found for node 1.
  CommandLines processes("/bin/ps | /bin/grep \"%s %d\" | /bin/grep -v grep | /bin/awk '{print $1}'",
                         source == StreamSource::encoder ? "HDpipe" : "v4l2_read", number);
  return processes.nextNumber(-1) != -1;
}

bool storeProfileState(int profile, int value) {
  ProfileStateWriter config;
  if (!config) return false;
  char name[16];
  formatText(name, "pf%d", profile);
  config.section(name).set(kAvailable, value);
  return config.save();
}

ProductSearch findProductOfProfile(int profile, char (&pidvid)[kShortCodeSize]) {
  const int channel = channelOfProfile(profile);
  if (channel == kNone) return ProductSearch::no_channel;
  int vnode = kNone;
  char usbslot[128];
  {
    const ConfigReader config(OpenFailure::silent);
    if (!config) return ProductSearch::unreadable;
    vnode = config.channel(channel).get(keys::vnode);
    config.channel(channel).get(keys::usbslot, usbslot);
  }
  return findProductIds(vnode, usbslot, pidvid) ? ProductSearch::found : ProductSearch::not_found;
}

}  // namespace usbdev
