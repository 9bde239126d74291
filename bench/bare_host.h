// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

/// The host without the library: its configuration, and the questions that the library's operations need answered, in
/// the fewest commands and opens that answer them. Written down here, and not taken from what the library does.
#include <map>
#include <string>
#include <vector>

namespace bench {

struct Key {
  const char *key;
  const char *sub_key;
  bool is_text;
};

constexpr Key number(const char *key, const char *sub_key = nullptr) { return {key, sub_key, false}; }
constexpr Key text(const char *key, const char *sub_key = nullptr) { return {key, sub_key, true}; }

constexpr int kChannels = 10;

/// The configuration file while it is open.
class Pass {
 public:
  static Pass reading() { return Pass(0); }
  static Pass writing() { return Pass(1); }
  Pass(const Pass &) = delete;
  Pass &operator=(const Pass &) = delete;
  ~Pass();

  int get(int channel, const Key &key, int otherwise = -1) const;
  const char *getText(int channel, const Key &key);
  void set(int channel, const Key &key, int value) const;
  void set(int channel, const Key &key, const char *value) const;

  /// Reads every key of a list.
  template <std::size_t Count>
  void getAll(int channel, const Key (&keys)[Count]) {
    for (const Key &key : keys) {
      if (key.is_text) {
        getText(channel, key);
      } else {
        get(channel, key);
      }
    }
  }

 private:
  explicit Pass(int mode);

  void *config_ = nullptr;
  char text_[256];
};

/// What a command prints, and what a file holds.
std::vector<std::string> ask(const std::string &command);
std::vector<std::string> linesOf(const std::string &path);

/// May the host encode? Five commands and two files on one that may.
void askEncoding();
/// The processor file, which is made anew each time.
void makeProcessorFile();
/// The formats of a camera, without the encoding question.
void listFormats(int node);
/// Vendor and product, and their entry in the table of types.
void askCameraType(int node);
void linkStream(int profile, const std::string &name);

struct Camera {
  int node;
  std::string slot;
};

/// The host's answers within one call, each asked once.
class Answers {
 public:
  /// The processor file of the one-channel question; its host serves more than one.
  void askOneChannel();
  /// The path of the device that a node's controller sits on; "" when it is not behind a bridge.
  const std::string &bridgeOf(int node);
  /// Do two cameras share a root port or a bridge?
  bool conflict(const Camera &one, const Camera &other);

 private:
  bool one_channel_asked_ = false;
  std::map<int, std::string> bridges_;
};

/// A new camera comes to a channel: its ids and formats and the other cameras are looked up, its settings written.
void plugIn(Answers &answers, int channel, const Camera &camera, const std::vector<Camera> &others);

}  // namespace bench
