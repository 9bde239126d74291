#include "core/host_queries.h"

#include <usbdev/core.h>

#include <cstdlib>
#include <cstring>

#include "core/shell_text.h"
#include "core/text.h"

namespace usbdev {
namespace {

constexpr char kProcessorFile[] = "/tmp/vl_cpu.info";
constexpr char kPackageMissing[] = "READCFG_FAILD";

int askPackageRegistry(const char *package, const char *field, char *value) {
  if (!isSafeInDoubleQuotes(package) || !isSafeInDoubleQuotes(field)) return -1;
  char command[kPackageTextSize];
  formatText(command, "%s \"%s\" \"%s\" -c -d READCFG_FAILD %s", "/sbin/readcfg", package, field,
             "-f /etc/config/bndl.conf");
  char line[kPackageTextSize];
  CommandLines answer("%s", command);
  if (!answer.next(line) || startsWith(line, kPackageMissing)) return -1;
  cutAtLineFeed(line);
  // A line that fills the buffer loses its last character, be it a line feed or not, and so reaches callers cut.
  copyCut(value, line, sizeof line - 2);
  return 0;
}

}  // namespace

bool isProcessorOtherThanIntel() {
  char command[128];
  formatText(command, "/bin/cat /proc/cpuinfo | /bin/grep vendor_id > %s", kProcessorFile);
  static_cast<void>(std::system(command) == 0);  // the file tells
  FileLines file(kProcessorFile);
  return file && !file.skipTo("GenuineIntel");
}

int copyHostSetting(const char *key, char *out, std::size_t length) {
  FileLines file("/etc/config/Tundrel.conf");
  if (!file) return -1;
  char line[256];
  while (file.next(line)) {
    const bool ntp_section = contains(line, "[NTP]");
    if (!ntp_section && contains(line, "[")) continue;
    const Pair setting = ntp_section ? Pair{} : splitPair(line, "=");
    if (!setting) {
      file.leaveOpen();
      return -1;
    }
    if (isSame(setting.left, key)) {
      copyCut(out, setting.right, length);
      return 1;
    }
  }
  return 0;
}

}  // namespace usbdev

int get_bndl_install_path(const char *package, char *path) { return get_bndl_info(package, "Install_Path", path); }

int get_bndl_info(const char *package, const char *field, char *value) {
  if (package == nullptr || field == nullptr || value == nullptr) return -1;
  return usbdev::askPackageRegistry(package, field, value);
}

int get_nas_info(const char *key, char *value) {
  if (key == nullptr || value == nullptr) return -1;
  return usbdev::copyHostSetting(key, value, usbdev::kHostTextSize - 1) < 0 ? -1 : 0;
}

int AMDmodel_oneChannelLimited(void) {
  if (!usbdev::isProcessorOtherThanIntel()) return 0;
  char model[usbdev::kHostTextSize] = "";
  if (get_nas_info("Internal Model", model) != 0) return 0;
  return usbdev::contains(model, "K41") || usbdev::contains(model, "K52") ? 1 : 0;
}
