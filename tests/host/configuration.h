// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Short forms of the configuration interface for tests.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "host/lib/vlxmlcfg/results.h"
#include "platform/xmlcfg.h"
#include "private_host.h"

inline const std::string kConfigFolder = std::string(kWorkFolder) + "/config";
inline const std::string kConfigFile = kConfigFolder + "/usbdev.conf";

enum Mode { kRead = 0, kWrite = 1 };

/// A handle on the file; a test closes it itself where the result of closing matters.
class Configuration {
 public:
  Configuration(Mode mode, const std::string &path) : opened_(xmlcfg_open(mode, path.c_str(), &handle_)) {}
  Configuration(const Configuration &) = delete;
  Configuration &operator=(const Configuration &) = delete;
  ~Configuration() {
    if (handle_) close();
  }

  int openResult() const { return opened_; }
  int close() { return xmlcfg_close(std::exchange(handle_, nullptr), 0); }

  int number(const char *section, const char *key, int missing = -1) {
    return xmlcfg_get_int(handle_, missing, "velmora", section, key, nullptr);
  }
  int setNumber(const char *section, const char *key, int value) {
    return xmlcfg_set_int(handle_, value, "velmora", section, key, nullptr);
  }
  std::string text(const char *section, const char *key, const char *missing = "", const char *sub_key = nullptr) {
    std::vector<char> buffer(1 << 16);
    xmlcfg_get_str(handle_, missing, buffer.data(), static_cast<int>(buffer.size()), "velmora", section, key, sub_key);
    return buffer.data();
  }
  int setText(const char *section, const char *key, const std::string &value, const char *sub_key = nullptr) {
    return xmlcfg_set_str(handle_, value.c_str(), "velmora", section, key, sub_key);
  }
  void *handle() { return handle_; }

 private:
  void *handle_ = nullptr;
  int opened_;
};
