#include <usbdev/hotplug.h>

#include <cstdio>
#include <cstring>

#include "core/lines.h"
#include "core/shell_text.h"
#include "core/text.h"
#include "hotplug/sound_card.h"

namespace usbdev {
namespace {

using Line = char[256];

/// The number of a node from the line that names it: its last digit alone, also for video12.
int nodeNumber(Line &line) {
  cutAtLineFeed(line);
  const std::size_t length = std::strlen(line);
  return length == 0 ? 0 : toInt(line + length - 1);
}

/// Reads the name of a camera's node, empty where its file is; false when the file cannot be opened.
bool readCameraName(int vnode, Line &name) {
  char path[64];
  formatText(path, "/sys/class/video4linux/video%d/name", vnode);
  FileLines file(path);
  if (!file) {
    std::fprintf(stderr, "open:[%s] failed\n", path);
    return false;
  }
  if (!file.next(name)) name[0] = '\0';
  return true;
}

/// May an interface be asked for? A port above 127 bytes is none.
bool isInterface(const char *name) {
  return isSafeWord(name) && std::strcspn(name, ":") < sizeof(_usbdev_update::usbslot);
}

/// Copies a sound card's name where the host knows the card.
void copyCardName(int card, char *out) {
  const SoundCard known(card);
  if (known) copyCut(out, known.info().name, sizeof known.info().name - 1);
}

/// Where the two drivers list the nodes of an interface.
constexpr char kCameraNodes[] = "/bin/ls /sys/bus/usb/drivers/uvcvideo/%s\\:1.%d/video4linux | /bin/awk '{print $1}'";
constexpr char kCardNodes[] = "/bin/ls /sys/bus/usb/drivers/snd-usb-audio/%s\\:1.%d/sound | /bin/awk '{print $1}'";

/// Takes a camera's node and name; false when its name cannot be read.
bool takeCamera(_usbdev_update &record, Line &line) {
  record.vnode = nodeNumber(line);
  record.state = 1;
  if (!readCameraName(record.vnode, line)) return false;
  cutAtLineFeed(line);
  copyText(record.devname, line);
  return true;
}

bool takeCard(_usbdev_update &record, Line &line) {
  record.anode = nodeNumber(line);
  record.state = 1;
  copyCardName(record.anode, record.devname);
  return true;
}

/// Asks interfaces 0 and 2 of the record's port, both always; `take` gets the first line of each that has a node.
void readNodes(_usbdev_update *record, const char *pattern, bool (*take)(_usbdev_update &, Line &)) {
  if (record == nullptr || !isTerminated(record->usbslot) || !isSafeWord(record->usbslot)) return;
  for (int interface = 0; interface <= 2; interface += 2) {
    CommandLines nodes(pattern, record->usbslot, interface);
    if (!nodes) {
      std::fputs("scan failure ...", stdout);
      continue;
    }
    Line line;
    if (nodes.next(line) && !take(*record, line)) nodes.leaveOpen();  // meant to stay open then
  }
}

/// Takes the first of an interface's nodes: 1 with the node, 0 when it has none, -1 when it could not be asked.
int takeFirst(CommandLines &nodes, int *node) {
  if (!nodes) return -1;
  Line line;
  if (!nodes.next(line)) return 0;
  *node = nodeNumber(line);
  return 1;
}

}  // namespace
}  // namespace usbdev

using namespace usbdev;

int get_video_info(const char *interface_name, int *vnode, char *name) {
  if (interface_name == nullptr || vnode == nullptr || name == nullptr) return -1;
  if (!isInterface(interface_name)) return 0;
  // Open until the name is read, too.
  CommandLines nodes("/bin/ls /sys/bus/usb/drivers/uvcvideo/%s/video4linux | /bin/awk '{print $1}'", interface_name);
  const int found = takeFirst(nodes, vnode);
  if (found != 1) return found;
  Line line;
  if (!readCameraName(*vnode, line)) return -1;
  copyCut(name, usbdev::trim(line), sizeof line - 1);
  return 0;
}

int get_audio_info(const char *interface_name, int *card, char *name) {
  if (interface_name == nullptr || card == nullptr || name == nullptr) return -1;
  if (!isInterface(interface_name)) return 0;
  CommandLines nodes("/bin/ls /sys/bus/usb/drivers/snd-usb-audio/%s/sound | /bin/awk '{print $1}'", interface_name);
  const int found = takeFirst(nodes, card);
  if (found == 1) copyCardName(*card, name);
  return found == -1 ? -1 : 0;
}

int get_usb_vnode(_usbdev_update *record) {
  readNodes(record, kCameraNodes, takeCamera);
  return 0;
}

int get_usb_anode(_usbdev_update *record) {
  readNodes(record, kCardNodes, takeCard);
  return 0;
}
