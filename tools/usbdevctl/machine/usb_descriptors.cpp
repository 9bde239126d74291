// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "machine/usb_descriptors.h"

#include <algorithm>

namespace usbdevctl {

namespace {

constexpr int kConfiguration = 2;
constexpr int kInterface = 4;
constexpr int kEndpoint = 5;
constexpr int kSuperspeedCompanion = 0x30;
constexpr int kHighSpeed = 480;
constexpr int kSuperspeed = 5000;

/// A descriptor, whose bytes are 0 beyond its end.
class Descriptor {
 public:
  explicit Descriptor(std::string_view bytes) : bytes_(bytes) {}

  int byte(std::size_t at) const { return at < bytes_.size() ? static_cast<unsigned char>(bytes_[at]) : 0; }
  int word(std::size_t at) const { return byte(at) | byte(at + 1) << 8; }
  int type() const { return byte(1); }
  bool isOf(int interface, int setting) const { return byte(2) == interface && byte(3) == setting; }
  bool isIsochronous() const { return (byte(3) & 3) == 1; }

 private:
  std::string_view bytes_;
};

/// Takes the next descriptor from the bytes; an empty one ends them.
Descriptor next(std::string_view &bytes) {
  const std::size_t length = bytes.empty() ? 0 : static_cast<unsigned char>(bytes.front());
  if (length < 2 || length > bytes.size()) return Descriptor({});
  const Descriptor descriptor(bytes.substr(0, length));
  bytes.remove_prefix(length);
  return descriptor;
}

/// How often in a second a transfer happens.
std::int64_t transfers(const Descriptor &endpoint, int speed) {
  const int exponent = std::clamp(endpoint.byte(6), 1, 16) - 1;
  return (speed >= kHighSpeed ? 8000 : 1000) >> std::min(exponent, 13);
}

int bytesOf(const Descriptor &endpoint) { return (endpoint.word(4) & 0x7ff) * (1 + (endpoint.word(4) >> 11 & 3)); }

}  // namespace

std::int64_t reservedBits(std::string_view descriptors, int interface, int setting, int speed) {
  std::int64_t bytes = 0;
  std::int64_t rate = 0;  // of the endpoint before
  bool wanted = false;
  int configurations = 0;
  for (Descriptor it = next(descriptors); it.type() != 0; it = next(descriptors)) {
    if (it.type() == kConfiguration && ++configurations > 1) break;
    if (it.type() == kInterface) wanted = it.isOf(interface, setting);
    if (it.type() == kEndpoint) {
      rate = wanted && it.isIsochronous() ? transfers(it, speed) : 0;
      if (speed < kSuperspeed) bytes += rate * bytesOf(it);
    }
    if (it.type() == kSuperspeedCompanion) bytes += rate * it.word(4);
  }
  return bytes * 8;
}

}  // namespace usbdevctl
