// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "hotplug/node_readers.h"

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
  // Intended: The number of a node is its last digit.
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

/// Is it an interface that can be asked for? The name of a port has at most 127 bytes.
bool isInterface(const char *name) {
  return isSafeWord(name) && std::strcspn(name, ":") < sizeof(_usbdev_update::usbslot);
}

/// Copies a sound card's name if the host knows the card.
void copyCardName(int card, TextBuffer out) {
  const SoundCard known(card);
  if (known) copyText(out, known.info().name);
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
void readNodes(_usbdev_update &record, const char *pattern, bool (*take)(_usbdev_update &, Line &)) {
  if (!isSafeWord(record.usbslot)) return;
  // Intended: Interface 2 counts more than interface 0.
  for (int interface = 0; interface <= 2; interface += 2) {
    CommandLines nodes(pattern, record.usbslot, interface);
    if (!nodes) {
      std::fputs("scan failure ...", stdout);
      continue;
    }
    Line line;
    // Intended: The command stays open.
    if (nodes.next(line) && !take(record, line)) nodes.leaveOpen();
  }
}

/// Takes the first of an interface's nodes.
NodeAnswer takeFirst(CommandLines &nodes, int &node) {
  if (!nodes) return NodeAnswer::unreadable;
  Line line;
  if (!nodes.next(line)) return NodeAnswer::missing;
  node = nodeNumber(line);
  return NodeAnswer::found;
}

}  // namespace

NodeAnswer readCamera(const char *interface_name, int &vnode, TextBuffer name) {
  if (!isInterface(interface_name)) return NodeAnswer::missing;
  // Open until the name is read, too.
  CommandLines nodes("/bin/ls /sys/bus/usb/drivers/uvcvideo/%s/video4linux | /bin/awk '{print $1}'", interface_name);
  const NodeAnswer answer = takeFirst(nodes, vnode);
  if (answer != NodeAnswer::found) return answer;
  Line line;
  if (!readCameraName(vnode, line)) return NodeAnswer::unreadable;
  copyText(name, trim(line));
  return NodeAnswer::found;
}

NodeAnswer readSoundCard(const char *interface_name, int &card, TextBuffer name) {
  if (!isInterface(interface_name)) return NodeAnswer::missing;
  CommandLines nodes("/bin/ls /sys/bus/usb/drivers/snd-usb-audio/%s/sound | /bin/awk '{print $1}'", interface_name);
  const NodeAnswer answer = takeFirst(nodes, card);
  if (answer == NodeAnswer::found) copyCardName(card, name);
  return answer;
}

void readCameraInPort(_usbdev_update &record) { readNodes(record, kCameraNodes, takeCamera); }

void readSoundCardInPort(_usbdev_update &record) { readNodes(record, kCardNodes, takeCard); }

}  // namespace usbdev
