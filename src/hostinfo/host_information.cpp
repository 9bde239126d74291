// What the pages tell about the host and its packages.
#include <usbdev/hostinfo.h>

#include "core/host_queries.h"
#include "core/lines.h"
#include "core/shell_text.h"
#include "core/text.h"

namespace usbdev {
namespace {

using Answer = char[127];

constexpr std::size_t kVersionSize = 256;

/// False when the package registry says nothing, or the name could not be asked for.
bool askRegistry(const char *package, const char *key, Answer &answer) {
  char command[256];
  if (!isSafeWord(package) || !formatText(command, "/sbin/readcfg %s %s -f /etc/config/bndl.conf", package, key)) {
    return false;
  }
  CommandLines registry("%s", command);
  if (!registry.next(answer)) return false;
  cutAtLineFeed(answer);
  return true;
}

void askFor(const char *package, const char *key, TextBuffer field) {
  Answer answer;
  if (askRegistry(package, key, answer)) copyText(field, answer);
}

}  // namespace
}  // namespace usbdev

int vl_get_nas_HTTPport(int *port) {
  if (port == nullptr) return -1;
  char value[256];
  const usbdev::HostSetting setting = usbdev::copyHostSetting("Web Access Port", value);
  if (setting == usbdev::HostSetting::found) *port = usbdev::toInt(value);
  return setting == usbdev::HostSetting::unreadable ? -1 : 0;
}

int vl_get_nas_version(char *version) {
  if (version == nullptr) return -1;
  const usbdev::HostSetting setting = usbdev::copyHostSetting("Version", {version, usbdev::kVersionSize});
  return setting == usbdev::HostSetting::unreadable ? -1 : 0;
}

int vl_get_bndl_info(const char *package, BndlInfo *info) {
  if (package == nullptr || info == nullptr) return 0;
  usbdev::askFor(package, "Version", info->version);
  usbdev::askFor(package, "Build", info->build);
  usbdev::askFor(package, "Install_Path", info->install_path);
  usbdev::Answer enabled = "";
  info->enabled = usbdev::askRegistry(package, "Enable", enabled) && usbdev::isSame(enabled, "TRUE") ? 1 : 0;
  return 0;
}
