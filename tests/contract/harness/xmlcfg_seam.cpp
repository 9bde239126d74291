// The functions of libvlxmlcfg.so, over the configuration of the current host.
#include <platform/xmlcfg.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "host.h"

namespace {

std::string pathOf(const char *root, const char *section, const char *key, const char *sub_key) {
  if (std::string(root) != "velmora") contract::Host::current()->journal.violation(std::string("root ") + root);
  std::string path = std::string(section) + "/" + key;
  if (sub_key != nullptr) path += std::string("/") + sub_key;
  return path;
}

}  // namespace

extern "C" {

int xmlcfg_open(int mode, const char *path, void **handle) {
  return contract::Host::current()->config.open(mode, path, handle);
}

int xmlcfg_get_int(void *handle, int default_value, const char *root, const char *section, const char *key,
                   const char *sub_key) {
  std::string value;
  const bool found = contract::Host::current()->config.read(handle, pathOf(root, section, key, sub_key), value);
  return found ? std::atoi(value.c_str()) : default_value;
}

// As the interface allows, a text that fills the buffer leaves no room for a terminator, and none is written.
int xmlcfg_get_str(void *handle, const char *default_value, char *buffer, int size, const char *root,
                   const char *section, const char *key, const char *sub_key) {
  std::string value;
  if (!contract::Host::current()->config.read(handle, pathOf(root, section, key, sub_key), value)) {
    value = default_value;
  }
  const size_t room = static_cast<size_t>(std::max(size, 0));
  memcpy(buffer, value.c_str(), std::min(value.size() + 1, room));
  return 1;
}

int xmlcfg_set_int(void *handle, int value, const char *root, const char *section, const char *key,
                   const char *sub_key) {
  return contract::Host::current()->config.write(handle, pathOf(root, section, key, sub_key), std::to_string(value));
}

int xmlcfg_set_str(void *handle, const char *value, const char *root, const char *section, const char *key,
                   const char *sub_key) {
  return contract::Host::current()->config.write(handle, pathOf(root, section, key, sub_key), value);
}

int xmlcfg_close(void *handle, int flag) { return contract::Host::current()->config.close(handle, flag); }

}  // extern "C"
