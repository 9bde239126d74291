// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "devices/device_walk.h"

namespace usbdev {
namespace {

constexpr char kVendor[] = "ATTRS{idVendor}";
constexpr char kProduct[] = "ATTRS{idProduct}";

/// False, with nothing taken, when the line holds another attribute.
bool takeAttribute(char *line, const char *attribute, char (&value)[kShortCodeSize]) {
  if (!contains(line, attribute)) return false;
  const Pair sides = splitPair(line, "==");
  if (sides) copyText(value, sides.right);
  return static_cast<bool>(sides);
}

}  // namespace

DeviceWalk::DeviceWalk(int vnode) : CommandLines("/sbin/udevadm info --name=/dev/video%d --attribute-walk", vnode) {}

void ProductIds::takeFirst(char *line) {
  has_vendor = has_vendor || takeAttribute(line, kVendor, vendor);
  has_product = has_product || takeAttribute(line, kProduct, product);
}

void ProductIds::takeLatest(char *line) {
  has_vendor = takeAttribute(line, kVendor, vendor) || has_vendor;
  has_product = takeAttribute(line, kProduct, product) || has_product;
}

}  // namespace usbdev
