// The state of the live streams, and the signals about it.
#include <sys/stat.h>
#include <usbdev/web.h>

#include <cstring>

#include "core/config.h"
#include "core/host_queries.h"
#include "core/lines.h"
#include "core/profile_mapping.h"
#include "core/text.h"
#include "devices/identification.h"
#include "web/stream_socket.h"

namespace usbdev {
namespace {

constexpr IntKey kAvailable{"available", nullptr, 0};
constexpr int kUnused = 0x30;  // the byte that has always stood where nothing is meant
constexpr int kStreamingPort = 10170;
constexpr std::size_t kStreamMessageSize = 32;

sockaddr_in streamingService() {
  sockaddr_in address;
  std::memset(&address, kUnused, sizeof address);
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_ANY);
  address.sin_port = htons(kStreamingPort);
  return address;
}

}  // namespace
}  // namespace usbdev

int vl_get_hls_status(int profile, int *status) {
  if (status == nullptr) return 0;
  char installed[usbdev::kPackageTextSize];
  if (!usbdev::askPackageRegistry("Velmora2", "Install_Path", installed)) {
    usbdev::copyText(installed, "/share/CACHEDEV1_DATA/.bndl/velmora2");
  }
  char playlist[192];
  // The profile is not checked: the sum may wrap.
  usbdev::formatText(playlist, "%s/%s/channel%d/playlist.m3u8", installed, "web/hls",
                     static_cast<int>(static_cast<unsigned>(profile) + 1U));
  struct stat found;
  *status = stat(playlist, &found) == 0 ? 1 : 0;
  return 0;
}

int vl_StreamNotify(const void *message) {
  if (message == nullptr) return -1;
  const usbdev::StreamSocket service(usbdev::streamingService(), {stderr, "StreamNotify -- Could not create socket.\n",
                                                                  "StreamNotify -- Connect Failed.\n"});
  if (!service) return -1;
  if (service.sendBytes(message, usbdev::kStreamMessageSize) >= 0) return 0;
  std::fputs("StreamNotify -- Send Error.\n", stderr);
  return -1;
}

int vl_SourcerStreamingProcess(int number, int kind) {
  usbdev::CommandLines processes("/bin/ps | /bin/grep \"%s %d\" | /bin/grep -v grep | /bin/awk '{print $1}'",
                                 kind != 0 ? "v4l2_read" : "HDpipe", number);
  return processes.nextNumber(-1) != -1 ? 1 : 0;
}

int mn_update_pfstate(int profile, int value) {
  usbdev::ProfileStateWriter config;
  if (!config) return -1;
  char name[16];
  usbdev::formatText(name, "pf%d", profile);
  config.section(name).set(usbdev::kAvailable, value);
  return config.save() ? 0 : -1;
}

int vl_get_pidvid(int profile, char *pidvid) {
  if (pidvid == nullptr) return -1;
  const int channel = usbdev::channelOfProfile(profile);
  if (channel == usbdev::kNone) return -1;
  int vnode = usbdev::kNone;
  char usbslot[128];
  {
    const usbdev::ConfigReader config(usbdev::OpenFailure::silent);
    if (!config) return -2;
    vnode = config.channel(channel).get(usbdev::keys::vnode);
    config.channel(channel).get(usbdev::keys::usbslot, usbslot);
  }
  char found[usbdev::kShortCodeSize];
  if (!usbdev::findProductIds(vnode, usbslot, found)) return -3;
  usbdev::copyCut(pidvid, found, sizeof found - 1);
  return 0;
}
