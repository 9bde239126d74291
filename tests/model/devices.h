// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What is attached to a host, and what kind of host it is, as plain values.
#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

namespace model {

struct Size {
  int width = 0;
  int height = 0;
  std::vector<float> rates;  // in the camera's order
};

struct Format {
  std::string code;  // "MJPG", "YUYV" or one that nobody streams
  std::vector<Size> sizes;
};

struct Camera {
  std::string slot;
  std::string name;
  std::string ids;     // "046d:0825"
  std::string bridge;  // path of the PCI bridge that it hangs on; "" = none
  std::vector<Format> formats;
};

struct Card {
  std::string slot;
  std::string name;
};

struct Host {
  bool one_channel = false;                  // serves one channel only
  bool encoder = false;                      // encodes H.264, so that YUYV counts
  std::vector<Camera> owned;                 // that may be plugged in
  std::set<std::string> unsupported;         // names of devices
  std::map<std::string, std::string> types;  // ids -> type of the camera
  std::map<int, Camera> cameras;             // by node
  std::map<int, Card> cards;                 // by number

  // "" where the node has no camera or its camera no bridge.
  std::string bridgeOf(int node) const { return cameras.count(node) != 0 ? cameras.at(node).bridge : ""; }
  // Those of the camera that has both, else "".
  std::string idsOf(int node, const std::string &slot) const {
    return cameras.count(node) != 0 && cameras.at(node).slot == slot ? cameras.at(node).ids : "";
  }
  std::string typeOf(int node, const std::string &slot) const {
    const auto type = types.find(idsOf(node, slot));
    return type == types.end() ? "" : type->second;
  }
};

}  // namespace model
