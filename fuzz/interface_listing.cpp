// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What the drivers list: the interfaces of the attached cameras and sound cards, their nodes and names.
#include <usbdev/usbdev.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "expect.h"
#include "fuzzed_host.h"
#include "input.h"

namespace {

using fuzz::expect;

constexpr char kAwk[] = " | /bin/awk '{print $1}'";
constexpr char kVideo[] = "/bin/ls /sys/bus/usb/drivers/uvcvideo";
constexpr char kSound[] = "/bin/ls /sys/bus/usb/drivers/snd-usb-audio";
constexpr std::size_t kMostLines = 16;   // a scan keeps fewer devices
constexpr std::size_t kMostPlugged = 3;  // each takes as long as a hundred lines
constexpr int kNodes = 10;               // a node's number is read from its last digit

struct Texts {
  std::string cameras;
  std::string cards;
  std::string node;
  std::string name;
  std::string port;
};

std::string firstLines(const std::string &text, std::size_t count) {
  std::size_t end = 0;
  for (std::size_t i = 0; i < count && end < text.size(); ++i)
    end = std::min(text.find('\n', end), text.size() - 1) + 1;
  return text.substr(0, end);
}

Texts textsOf(fuzz::Input &input, std::size_t most_lines) {
  Texts texts;
  for (std::string *text : {&texts.cameras, &texts.cards, &texts.node, &texts.name, &texts.port}) {
    *text = firstLines(input.text(), most_lines);
  }
  texts.port = std::string(texts.port.c_str()).substr(0, 127);
  return texts;
}

/// The interfaces that a listing names.
std::vector<std::string> interfacesIn(const std::string &listing) {
  std::vector<std::string> lines = fuzz::linesOf(listing, 256);
  for (std::string &line : lines) line.erase(std::min(line.find('\n'), line.size()));
  return lines;
}

void attach(fuzz::FuzzedHost &host, const Texts &texts) {
  host.commands.prints(std::string(kVideo) + " | grep \\:" + kAwk, texts.cameras);
  host.commands.prints(std::string(kSound) + " | grep \\:" + kAwk, texts.cards);
  for (const std::string &name : interfacesIn(texts.cameras)) {
    host.commands.prints(kVideo + ("/" + name) + "/video4linux" + kAwk, texts.node);
  }
  for (const std::string &name : interfacesIn(texts.cards)) {
    host.commands.prints(kSound + ("/" + name) + "/sound" + kAwk, texts.node);
  }
  for (const char *interface : {"\\:1.0", "\\:1.2"}) {
    host.commands.prints(kVideo + ("/" + texts.port) + interface + "/video4linux" + kAwk, texts.node);
    host.commands.prints(kSound + ("/" + texts.port) + interface + "/sound" + kAwk, texts.node);
  }
  for (int i = 0; i < kNodes; ++i) {
    host.files.write("/sys/class/video4linux/video" + std::to_string(i) + "/name", texts.name);
    host.sound.card(i, 1, 1, 1, texts.name.substr(0, 60));
  }
}

bool isPortIn(const std::vector<std::string> &interfaces, const std::string &port) {
  return std::any_of(interfaces.begin(), interfaces.end(),
                     [&](const std::string &name) { return name.substr(0, name.find(':')) == port; });
}

void expectNew(const _usbdev_update *found, int count, const std::vector<std::string> &interfaces) {
  expect(count >= 0 && count <= USBDEV_CHANNELS, "a scan finds at most its list's devices");
  for (int i = 0; i < count; ++i) {
    expect(fuzz::isTerminated(found[i].usbslot) && fuzz::isTerminated(found[i].devname), "a new device is terminated");
    expect(found[i].state == 1, "a new device is present");
    expect(isPortIn(interfaces, found[i].usbslot), "a new device is in a port that the driver lists");
  }
}

void expectScans(const Texts &texts) {
  _usbdev_update channels[USBDEV_CHANNELS] = {};
  _usbdev_update cameras[USBDEV_CHANNELS] = {};
  _usbdev_update cards[USBDEV_CHANNELS] = {};
  int conflicts[USBDEV_CHANNELS];
  std::fill(std::begin(conflicts), std::end(conflicts), -1);
  int camera_count = 0;
  int card_count = 0;
  expect(get_conf_chinfo(channels, conflicts, &camera_count, cameras) == 0, "a scan of the cameras ends");
  expectNew(cameras, camera_count, interfacesIn(texts.cameras));
  expect(get_conf_audioinfo(channels, conflicts, &card_count, cards, camera_count, cameras) == 0,
         "a scan of the cards ends");
  expectNew(cards, card_count, interfacesIn(texts.cards));
}

void expectPort(const Texts &texts) {
  _usbdev_update record{};
  record.vnode = record.anode = -1;
  std::memcpy(record.usbslot, texts.port.data(), texts.port.size());
  get_usb_vnode(&record);
  get_usb_anode(&record);
  expect(record.vnode >= -1 && record.vnode < kNodes && record.anode >= -1 && record.anode < kNodes,
         "a node is one digit");
  expect(fuzz::isTerminated(record.devname), "a device's name is terminated");
  expect(record.usbslot == texts.port, "the port stays");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  fuzz::Input input(data, size);
  const bool knows_camera = input.number(2) == 1;
  const bool starts_up = input.number(8) == 7;
  const Texts texts = textsOf(input, starts_up ? kMostPlugged : kMostLines);
  fuzz::FuzzedHost host;
  host.commands.allowInsideCriticalSection();  // the scans hold the lock
  attach(host, texts);
  const std::string stored_name = texts.name.substr(0, 255).c_str();
  if (knows_camera) host.channel(3).exists(1).slot(texts.port).name(stored_name).profile(1).vnode(2);

  if (!starts_up) {
    expectScans(texts);
    expectPort(texts);
    return 0;
  }
  expect(mn_sync_usbdev_conf() == 1, "a synchronisation ends");
  for (int i = 0; i < USBDEV_CHANNELS; ++i) {
    expect(host.channel(i).get("usbslot").size() < 128, "a port that is stored can be read again");
    expect(host.channel(i).get("devname").size() < 256, "a name that is stored can be read again");
  }
  return 0;
}
