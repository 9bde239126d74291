// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Removes secrets from texts that leave the host, wherever they occur.
#pragma once

#include <string>
#include <vector>

namespace usbdevctl {

class Redaction {
 public:
  /// An empty text is not a secret.
  void add(const std::string &secret);

  /// The text with "[removed]" for each secret in it, the longest first.
  std::string apply(std::string text) const;

 private:
  std::vector<std::string> secrets_;  // longest first
};

/// Makes the devices' serial numbers in the attribute walks of udevadm secrets. The kernel gives a host controller the
/// address of its PCI device as a serial number, which is not a secret.
void addSerialNumbers(Redaction &redaction, const std::string &walk);

/// The walk without the lines' serial numbers, however short.
std::string withoutSerialNumbers(const std::string &walk);

}  // namespace usbdevctl
