// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The C interface of the XML configuration files; results.h lists what its functions return.
#include "platform/xmlcfg.h"

#include <charconv>
#include <memory>
#include <string>
#include <string_view>

#include "config_document.h"
#include "config_file.h"
#include "host/lib/without_exceptions.h"
#include "readable_text.h"
#include "results.h"

namespace {

using xmlcfg::ValuePath;

constexpr int kReading = 0;
constexpr int kWriting = 1;
constexpr char kFirstContent[] = "<velmora/>\n";
constexpr std::size_t kMostDigits = 64;  // leading zeros included

struct OpenConfig {
  bool writable = false;
  xmlcfg::Descriptor file;  // that of a writer has the lock
  xmlcfg::Place place;
  xmlcfg::ConfigDocument document;
  bool incomplete = false;  // a value could not be set for lack of memory
};

bool isComplete(const ValuePath &path) { return path.root && path.section && path.key; }

int load(int mode, const char *path, OpenConfig &config) {
  config.writable = mode == kWriting;
  int result = config.writable ? xmlcfg::openForWriting(path, kFirstContent, config.file, config.place)
                               : xmlcfg::openForReading(path, config.file);
  if (result != xmlcfg::kDone) return result;
  std::vector<char> bytes;
  result = xmlcfg::readAll(config.file, bytes);
  if (result != xmlcfg::kDone) return result;
  if (!config.document.parse(std::move(bytes))) return xmlcfg::kDamaged;
  if (!config.writable) config.file = xmlcfg::Descriptor();
  return xmlcfg::kOpened;
}

bool readValue(void *handle, const ValuePath &path, xmlcfg::BoundedText &value) {
  return handle && isComplete(path) && static_cast<OpenConfig *>(handle)->document.get(path, value);
}

int writeValue(void *handle, const ValuePath &path, const char *value) {
  if (!handle || !value || !isComplete(path)) return xmlcfg::kBadArgument;
  auto *config = static_cast<OpenConfig *>(handle);
  if (!config->writable) return xmlcfg::kReadOnly;
  int result = withoutExceptions(
      xmlcfg::kNoMemory, [&] { return config->document.set(path, value) ? xmlcfg::kDone : xmlcfg::kBadArgument; });
  if (result == xmlcfg::kNoMemory) config->incomplete = true;
  return result;
}

}  // namespace

extern "C" {

int xmlcfg_open(int mode, const char *path, void **handle) {
  if (!path || !handle || (mode != kReading && mode != kWriting)) return xmlcfg::kBadArgument;
  return withoutExceptions(xmlcfg::kNoMemory, [&] {
    auto config = std::make_unique<OpenConfig>();
    int result = load(mode, path, *config);
    if (result == xmlcfg::kOpened) *handle = config.release();
    return result;
  });
}

int xmlcfg_get_int(void *handle, int default_value, const char *root, const char *section, const char *key,
                   const char *sub_key) {
  char digits[kMostDigits];
  xmlcfg::BoundedText text(digits, sizeof digits);
  if (!readValue(handle, {root, section, key, sub_key}, text) || text.length > text.size) return default_value;
  int value = 0;
  const char *end = digits + text.length;
  auto [stop, problem] = std::from_chars(digits, end, value);
  return problem == std::errc() && stop == end ? value : default_value;
}

int xmlcfg_get_str(void *handle, const char *default_value, char *buffer, int size, const char *root,
                   const char *section, const char *key, const char *sub_key) {
  if (!buffer || size < 1) return xmlcfg::kBadArgument;
  xmlcfg::BoundedText text(buffer, static_cast<std::size_t>(size));
  if (!readValue(handle, {root, section, key, sub_key}, text))
    for (char byte : std::string_view(default_value ? default_value : "")) text.append(byte);
  text.append('\0');
  return xmlcfg::kDone;
}

int xmlcfg_set_int(void *handle, int value, const char *root, const char *section, const char *key,
                   const char *sub_key) {
  char digits[kMostDigits] = {};
  std::to_chars(digits, digits + sizeof digits - 1, value);
  return writeValue(handle, {root, section, key, sub_key}, digits);
}

int xmlcfg_set_str(void *handle, const char *value, const char *root, const char *section, const char *key,
                   const char *sub_key) {
  return writeValue(handle, {root, section, key, sub_key}, value);
}

int xmlcfg_close(void *handle, int) {
  if (!handle) return xmlcfg::kBadArgument;
  std::unique_ptr<OpenConfig> config(static_cast<OpenConfig *>(handle));
  if (config->incomplete) return xmlcfg::kNotStored;
  if (!config->document.changed()) return xmlcfg::kDone;
  return withoutExceptions(xmlcfg::kNotStored,
                           [&] { return xmlcfg::replace(config->place, config->file, config->document.print()); });
}

}  // extern "C"
