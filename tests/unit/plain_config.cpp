// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "plain_config.h"

#include <platform/xmlcfg.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace {

usbdev::PlainConfig &configOf(void *handle) { return *static_cast<usbdev::PlainConfig *>(handle); }

std::string pathOf(const char *section, const char *key, const char *sub_key) {
  const std::string path = std::string(section) + "/" + key;
  return sub_key == nullptr ? path : path + "/" + sub_key;
}

}  // namespace

extern "C" {

int xmlcfg_get_int(void *handle, int default_value, const char *, const char *section, const char *key,
                   const char *sub_key) {
  const auto found = configOf(handle).find(pathOf(section, key, sub_key));
  return found == configOf(handle).end() ? default_value : std::atoi(found->second.c_str());
}

// As the interface allows, a text that fills the buffer is left unterminated.
int xmlcfg_get_str(void *handle, const char *default_value, char *buffer, int size, const char *, const char *section,
                   const char *key, const char *sub_key) {
  const auto found = configOf(handle).find(pathOf(section, key, sub_key));
  const std::string text = found == configOf(handle).end() ? default_value : found->second;
  memcpy(buffer, text.c_str(), std::min(text.size() + 1, static_cast<size_t>(size)));
  return 1;
}

int xmlcfg_set_int(void *handle, int value, const char *, const char *section, const char *key, const char *sub_key) {
  configOf(handle)[pathOf(section, key, sub_key)] = std::to_string(value);
  return 1;
}

int xmlcfg_set_str(void *handle, const char *value, const char *, const char *section, const char *key,
                   const char *sub_key) {
  configOf(handle)[pathOf(section, key, sub_key)] = value;
  return 1;
}

}  // extern "C"
