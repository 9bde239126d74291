// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// One channel as it is stored: its keys, each a text, and what a missing one reads as.
#pragma once

#include <map>
#include <string>

namespace model {

class Channel {
 public:
  int number(const std::string &key, int missing) const { return has(key) ? std::stoi(keys.at(key)) : missing; }
  std::string text(const std::string &key) const { return has(key) ? keys.at(key) : ""; }
  void set(const std::string &key, int value) { keys[key] = std::to_string(value); }
  void set(const std::string &key, const std::string &value) { keys[key] = value; }
  bool has(const std::string &key) const { return keys.count(key) != 0; }

  bool exists() const { return number("exists", 0) != 0; }
  int profile() const { return number("profile", -1); }
  bool hasProfile() const { return profile() != -1; }
  int conflict() const { return number("conflictch", -1); }
  bool isParked() const { return conflict() != -1; }
  int vnode() const { return number("video/vnode", -1); }
  bool hasVideo() const { return vnode() != -1; }
  int anode() const { return number("audio/anode", -1); }
  bool hasAudio() const { return anode() != -1; }
  std::string slot() const { return text("usbslot"); }
  std::string name() const { return text("devname"); }
  float rate() const { return has("video/framerate") ? std::stof("0" + text("video/framerate")) : 30.0F; }
  // 0 = none, 1 = audio, 2 = video, 3 = both.
  int streamType() const { return (hasVideo() ? 2 : 0) + (hasAudio() ? 1 : 0); }

  std::map<std::string, std::string> keys;  // "video/vnode" -> "2"
};

}  // namespace model
