#include "core/config.h"

#include <platform/xmlcfg.h>
#include <pthread.h>

#include <cstdio>
#include <cstring>

#include "core/text.h"

namespace usbdev {
namespace {

constexpr char kRoot[] = "velmora";
pthread_mutex_t config_lock = PTHREAD_MUTEX_INITIALIZER;

void sayOpenFailed(OpenFailure failure, const char *path, int result) {
  switch (failure) {
    case OpenFailure::usual:
      std::fprintf(stderr, "open:[%s] failed, ret: %d\n", path, result);
      break;
    case OpenFailure::read:
      std::fprintf(stderr, "open read [%s] failed, ret: %d\n", path, result);
      break;
    case OpenFailure::write:
      std::fprintf(stderr, "open write [%s] failed, ret: %d\n", path, result);
      break;
    case OpenFailure::silent:
      break;
  }
}

}  // namespace

ConfigSession::ConfigSession(int mode, const char *path, OpenFailure failure) {
  pthread_mutex_lock(&config_lock);
  result_ = xmlcfg_open(mode, path, &handle_);
  if (!*this) sayOpenFailed(failure, path, result_);
}

ConfigSession::~ConfigSession() {
  if (*this) xmlcfg_close(handle_, 0);
  pthread_mutex_unlock(&config_lock);
}

Section::Section(void *handle, const char *pattern, int number) : handle_(handle) {
  formatText(name_, pattern, number);
}

int Section::get(const IntKey &key, int otherwise) const {
  return xmlcfg_get_int(handle_, otherwise, kRoot, name_, key.key, key.sub_key);
}

void Section::getText(const char *key, const char *sub_key, char *out, std::size_t size, const char *otherwise) const {
  std::memset(out, 0, size);
  xmlcfg_get_str(handle_, otherwise, out, static_cast<int>(size), kRoot, name_, key, sub_key);
  out[size - 1] = '\0';  // the host library may fill all bytes
}

void Section::set(const IntKey &key, int value) const {
  xmlcfg_set_int(handle_, value, kRoot, name_, key.key, key.sub_key);
}

void Section::setText(const char *key, const char *sub_key, const char *value) const {
  xmlcfg_set_str(handle_, value, kRoot, name_, key, sub_key);
}

}  // namespace usbdev
