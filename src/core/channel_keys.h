// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// A constant for every key of a channel in the configuration file: its path, what a missing key usually reads as, and
// the size that its text is read into. A reader whose default or size differs on purpose names it at the call.
#pragma once

namespace usbdev {

constexpr int kChannels = 10;
constexpr int kProfiles = 4;
constexpr int kNone = -1;          // no profile, no node, no conflict
constexpr int kUnsupported = 999;  // conflict mark of a device that cannot be used

/// Any other stored code is kept.
enum class Codec : int {
  h264 = 0,   // the camera's raw picture, encoded by the host
  mjpeg = 1,  // the camera's own
};

struct IntKey {
  const char *key;
  const char *sub_key;
  int usual_default;
};

struct CodecKey : IntKey {};

/// A text key: its path and how it is read.
struct TextPath {
  const char *key;
  const char *sub_key;
  const char *usual_default;
  int size;  // of the buffer that it is read into
};

/// A text key whose size the compiler knows.
template <int Size>
struct TextKey : TextPath {
  constexpr TextKey(const char *name, const char *sub_name, const char *otherwise = "")
      : TextPath{name, sub_name, otherwise, Size} {}

  /// The same key, read into a smaller buffer.
  template <int Smaller>
  constexpr TextKey<Smaller> cutTo() const {
    static_assert(Smaller < Size);
    return {key, sub_key, usual_default};
  }
};

namespace keys {

#define CHANNEL_KEY(type, name, ...) inline constexpr type name{__VA_ARGS__};
#include "core/channel_keys.def"
#undef CHANNEL_KEY

}  // namespace keys
}  // namespace usbdev
