// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What the host knows of a camera: udevadm's attribute walk, and the table of front-end types.
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

constexpr int kNode = 4;
constexpr char kBefore = 'Z';

bool holds(const std::string &text, const std::string &part) { return text.find(part) != std::string::npos; }

/// The name of one of the devices in the walk, which the camera's port is then said to have.
std::string portIn(const std::string &walk, int number) {
  const std::string mark = "KERNELS==\"";
  std::size_t at = 0;
  for (int i = 0; i <= number; ++i)
    at = walk.find(mark, at) == std::string::npos ? at : walk.find(mark, at) + mark.size();
  return walk.substr(at, std::min<std::size_t>(walk.find('"', at) - at, 127));
}

void expectIds(const _usbdev_des &device, const std::string &walk) {
  char ids[17];
  std::memset(ids, kBefore, sizeof ids);
  const int found = find_pidvid(&device, ids);
  expect(found == 0 || found == 1, "ids are found or not");
  expect(ids[16] == kBefore, "ids take at most 16 bytes");
  if (found == 0) {
    expect(ids[0] == kBefore, "ids that are not found are untouched");
    return;
  }
  expect(fuzz::isTerminated(ids), "ids are terminated");
  const std::string text = ids;
  const std::size_t colon = text.find(':');
  expect(colon != std::string::npos || text.size() == 15, "ids have a colon between them");
  expect(holds(walk, text.substr(0, colon)), "the vendor is in the walk");
  if (colon != std::string::npos && colon == text.rfind(':'))
    expect(holds(walk, text.substr(colon + 1)), "the product is in the walk");
}

void expectType(const _usbdev_des &device, const std::string &table) {
  char type[17];
  std::memset(type, kBefore, sizeof type);
  const int found = get_fetypeid(&device, type);
  expect(type[16] == kBefore, "a type takes at most 16 bytes");
  expect(found == 1 ? fuzz::isTerminated(type) && holds(table, type) : found == -1 && type[0] == kBefore,
         "a type is one of the table, or untouched");
}

/// The path up to the controller, in the first line of the device; empty where there is none.
std::string controllerIn(const std::string &device_line) {
  const std::vector<std::string> lines = fuzz::linesOf(device_line, 256);
  if (lines.empty()) return "";
  const std::size_t devices = lines[0].find("devices");
  const std::size_t usb = lines[0].find("usb");
  const bool is_path = devices != std::string::npos && devices > 0 && usb != std::string::npos && usb > devices;
  return is_path ? lines[0].substr(devices - 1, usb - devices) : "";
}

void expectBridge(const std::string &classes, const std::string &device_line) {
  const std::vector<std::string> lines = fuzz::linesOf(classes, 256);
  const bool has_bridge = std::any_of(lines.begin(), lines.end(), [](const auto &line) { return holds(line, "0x06"); });
  expect(isPCIbridge(kNode) == (has_bridge ? 1 : 0), "a bridge is known by its class");
  char path[257];
  std::memset(path, kBefore, sizeof path);
  const int found = get_pcibridgePath(kNode, path);
  expect(path[256] == kBefore, "a path takes at most 256 bytes");
  const std::string controller = controllerIn(device_line);
  expect(found == (controller.empty() ? 0 : 1), "a camera on a USB controller has a path");
  expect(found == 0 ? path[0] == kBefore : path == controller, "the path is that of the controller");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  fuzz::Input input(data, size);
  const int port_number = input.number(8);
  const std::string walk = input.text();
  const std::string table = input.text();
  const std::string classes = fuzz::linesWith(walk, "{class}");
  const std::string device_line = fuzz::linesWith(walk, "looking at device");

  fuzz::FuzzedHost host;
  host.commands.prints(contract::walkCommand(kNode), walk);
  host.commands.prints(contract::classCommand(kNode), classes);
  host.commands.prints(contract::deviceLineCommand(kNode), device_line);
  host.files.write("/etc/config/.usbFECam.dat", table);
  _usbdev_des device{};
  device.node = kNode;
  const std::string port = portIn(walk, port_number);
  std::memcpy(device.usbslot, port.data(), port.size());

  expectIds(device, walk);
  expectType(device, table);
  expectBridge(classes, device_line);
  const int hard = vl_force_kill_v4l2_ctl(kNode);
  expect(hard == 0 || (hard == 1 && holds(walk, "0603") && holds(walk, "8612")), "only that model needs signal 9");
  return 0;
}
