// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "machine/usb_tree.h"

#include <algorithm>
#include <regex>

#include "machine/usb_descriptors.h"

namespace usbdevctl {

namespace {

const std::string kDevices = "/sys/bus/usb/devices/";
constexpr std::size_t kMostReservations = 16;
constexpr char kVideoClass[] = "0e";

std::string busOf(const std::string &port) { return port.substr(0, port.find('-')); }

}  // namespace

// Here and elsewhere a pattern is made when it is first needed, because most commands need none and each takes a while.
bool UsbTree::isPort(const std::string &port) {
  static const std::regex pattern(R"(\d{1,3}-\d{1,3}(\.\d{1,3}){0,6})");
  return port.size() < 64 && std::regex_match(port, pattern);
}

bool UsbTree::isThere(const std::string &port) const { return files_.exists(kDevices + port); }

std::string UsbTree::fileOf(const std::string &port, const std::string &attribute) {
  return kDevices + port + "/" + attribute;
}

std::string UsbTree::attribute(const std::string &port, const std::string &name) const {
  return files_.line(fileOf(port, name));
}

std::string UsbTree::hubPort(const std::string &port) {
  const std::size_t dot = port.rfind('.');
  if (dot != std::string::npos) {
    const std::string hub = port.substr(0, dot);
    return kDevices + hub + ":1.0/" + hub + "-port" + port.substr(dot + 1);
  }
  const std::string bus = busOf(port);
  return kDevices + bus + "-0:1.0/usb" + bus + "-port" + port.substr(bus.size() + 1);
}

int UsbTree::speed(const std::string &port) const { return files_.number(fileOf(port, "speed")); }

std::vector<std::string> UsbTree::interfacesOf(const std::string &port) const {
  std::vector<std::string> interfaces;
  for (const std::string &name : files_.names(kDevices + port)) {
    if (name.rfind(port + ":", 0) == 0) interfaces.push_back(fileOf(port, name));
  }
  return interfaces;
}

bool UsbTree::isCamera(const std::string &port) const {
  const std::vector<std::string> interfaces = interfacesOf(port);
  return std::any_of(interfaces.begin(), interfaces.end(), [this](const std::string &interface) {
    return files_.line(interface + "/bInterfaceClass") == kVideoClass;
  });
}

std::vector<std::string> UsbTree::cameras() const {
  std::vector<std::string> cameras;
  for (const std::string &name : files_.names(kDevices)) {
    if (isPort(name) && isCamera(name)) cameras.push_back(name);
  }
  return cameras;
}

bool UsbTree::hasNode(const std::string &port) const {
  const std::vector<std::string> interfaces = interfacesOf(port);
  return std::any_of(interfaces.begin(), interfaces.end(), [this](const std::string &interface) {
    return !files_.names(interface + "/video4linux").empty();
  });
}

std::int64_t UsbTree::reservedBy(const std::string &port) const {
  std::int64_t bits = 0;
  for (const std::string &interface : interfacesOf(port)) {
    const int setting = files_.number(interface + "/bAlternateSetting");
    if (setting == 0) continue;
    const int number = files_.number(interface + "/bInterfaceNumber", 16);
    bits += reservedBits(files_.content(fileOf(port, "descriptors")), number, setting, speed(port));
  }
  return bits;
}

std::vector<std::string> UsbTree::portsOn(const std::string &bus) const {
  std::vector<std::string> ports;
  for (const std::string &name : files_.names(kDevices)) {
    if (isPort(name) && busOf(name) == bus) ports.push_back(name);
  }
  return ports;
}

std::vector<Bus> UsbTree::buses() const {
  static const std::regex pattern(R"(usb(\d{1,3}))");
  std::vector<Bus> buses;
  for (const std::string &name : files_.names(kDevices)) {
    std::smatch root_hub;
    if (!std::regex_match(name, root_hub, pattern)) continue;
    std::int64_t bits = 0;
    for (const std::string &port : portsOn(root_hub[1])) bits += reservedBy(port);
    buses.push_back({std::stoi(root_hub[1]), speed(name), megabits(bits)});
  }
  std::sort(buses.begin(), buses.end(), [](const Bus &one, const Bus &other) { return one.number < other.number; });
  return buses;
}

std::vector<Reservation> UsbTree::reservationsBeside(const std::string &port) const {
  std::vector<Reservation> reservations;
  for (const std::string &name : portsOn(busOf(port))) {
    if (name == port) continue;
    const std::int64_t bits = reservedBy(name);
    if (bits > 0 && reservations.size() < kMostReservations) {
      reservations.push_back({name, attribute(name, "product"), bits});
    }
  }
  return reservations;
}

bool UsbTree::areTwins(const std::string &port, const std::string &other) const {
  const std::string serial = attribute(port, "serial");
  if (port == other || attribute(other, "serial") != serial) return false;
  const auto same = [&](const char *name) { return attribute(port, name) == attribute(other, name); };
  return !serial.empty() || (same("idVendor") && same("idProduct"));
}

std::optional<std::string> UsbTree::twinOf(const std::string &port) const {
  const std::vector<std::string> all = cameras();
  const auto twin = std::find_if(all.begin(), all.end(), [&](const std::string &it) { return areTwins(port, it); });
  return twin == all.end() ? std::nullopt : std::optional(*twin);
}

}  // namespace usbdevctl
