// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The functions of libvlxmlcfg.so, over the configuration of the current host.
#include <platform/xmlcfg.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "host.h"

using contract::FakeConfig;
using contract::Host;

namespace {

std::string pathOf(const char *root, const char *section, const char *key, const char *sub_key) {
  if (std::string(root) != "velmora") Host::current()->journal.violation(std::string("root ") + root);
  std::string path = std::string(section) + "/" + key;
  if (sub_key != nullptr) path += std::string("/") + sub_key;
  return path;
}

int set(void *handle, const char *call, const std::string &path, const std::string &value) {
  const std::optional<int> failure = Host::current()->calls.failure(call, path);
  return failure ? *failure : Host::current()->config.write(handle, path, value);
}

}  // namespace

extern "C" {

int xmlcfg_open(int mode, const char *path, void **handle) {
  Host *host = Host::current();
  if (const std::optional<int> code = host->calls.failure("xmlcfg_open", mode == 0 ? "r" : "w")) {
    host->config.failOpenNumber(1, *code);
  }
  return host->config.open(mode, path, handle);
}

int xmlcfg_get_int(void *handle, int default_value, const char *root, const char *section, const char *key,
                   const char *sub_key) {
  std::string value;
  const std::string path = pathOf(root, section, key, sub_key);
  if (Host::current()->calls.failure("xmlcfg_get_int", path)) return default_value;
  const bool found = Host::current()->config.read(handle, path, value);
  return found ? std::atoi(value.c_str()) : default_value;
}

// As the interface allows, a text that fills the buffer leaves no room for a terminator, and none is written.
int xmlcfg_get_str(void *handle, const char *default_value, char *buffer, int size, const char *root,
                   const char *section, const char *key, const char *sub_key) {
  std::string value;
  const std::string path = pathOf(root, section, key, sub_key);
  const size_t room = static_cast<size_t>(std::max(size, 0));
  if (const std::optional<int> failure = Host::current()->calls.failure("xmlcfg_get_str", path)) {
    if (*failure == contract::kFilled) memset(buffer, '?', room);
    return 0;
  }
  if (!Host::current()->config.read(handle, path, value)) value = default_value;
  memcpy(buffer, value.c_str(), std::min(value.size() + 1, room));
  return 1;
}

int xmlcfg_set_int(void *handle, int value, const char *root, const char *section, const char *key,
                   const char *sub_key) {
  return set(handle, "xmlcfg_set_int", pathOf(root, section, key, sub_key), std::to_string(value));
}

int xmlcfg_set_str(void *handle, const char *value, const char *root, const char *section, const char *key,
                   const char *sub_key) {
  return set(handle, "xmlcfg_set_str", pathOf(root, section, key, sub_key), value);
}

int xmlcfg_close(void *handle, int flag) {
  FakeConfig &config = Host::current()->config;
  const bool writing = config.isWriting(handle);
  const std::optional<int> failure = Host::current()->calls.failure("xmlcfg_close", writing ? "w" : "r");
  if (failure && writing) config.failWriteCloseNumber(1, *failure);
  const int result = config.close(handle, flag);
  return failure ? *failure : result;
}

}  // extern "C"
