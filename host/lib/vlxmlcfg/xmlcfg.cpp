/* The C interface of the XML configuration files; results.h tells what its functions answer. */
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
  xmlcfg::Descriptor file;  // a writer's holds the lock
  std::string path;
  xmlcfg::ConfigDocument document;
  bool incomplete = false;  // a value could not be set for lack of memory
};

bool is_complete(const ValuePath &path) { return path.root && path.section && path.key; }

int load(int mode, const char *path, OpenConfig &config) {
  config.writable = mode == kWriting;
  int result = config.writable ? xmlcfg::open_for_writing(path, kFirstContent, config.file, config.path)
                               : xmlcfg::open_for_reading(path, config.file);
  if (result != xmlcfg::kDone) return result;
  std::vector<char> bytes;
  result = xmlcfg::read_all(config.file, bytes);
  if (result != xmlcfg::kDone) return result;
  if (!config.document.parse(std::move(bytes))) return xmlcfg::kDamaged;
  if (!config.writable) config.file = xmlcfg::Descriptor();
  return xmlcfg::kOpened;
}

bool read_value(void *handle, const ValuePath &path, xmlcfg::BoundedText &value) {
  return handle && is_complete(path) && static_cast<OpenConfig *>(handle)->document.get(path, value);
}

int write_value(void *handle, const ValuePath &path, const char *value) {
  if (!handle || !value || !is_complete(path)) return xmlcfg::kBadArgument;
  auto *config = static_cast<OpenConfig *>(handle);
  if (!config->writable) return xmlcfg::kReadOnly;
  int result = without_exceptions(
      xmlcfg::kNoMemory, [&] { return config->document.set(path, value) ? xmlcfg::kDone : xmlcfg::kBadArgument; });
  if (result == xmlcfg::kNoMemory) config->incomplete = true;
  return result;
}

}  // namespace

extern "C" {

int xmlcfg_open(int mode, const char *path, void **handle) {
  if (!path || !handle || (mode != kReading && mode != kWriting)) return xmlcfg::kBadArgument;
  return without_exceptions(xmlcfg::kNoMemory, [&] {
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
  if (!read_value(handle, {root, section, key, sub_key}, text) || text.length > text.size) return default_value;
  int value = 0;
  const char *end = digits + text.length;
  auto [stop, problem] = std::from_chars(digits, end, value);
  return problem == std::errc() && stop == end ? value : default_value;
}

int xmlcfg_get_str(void *handle, const char *default_value, char *buffer, int size, const char *root,
                   const char *section, const char *key, const char *sub_key) {
  if (!buffer || size < 1) return xmlcfg::kBadArgument;
  xmlcfg::BoundedText text(buffer, static_cast<std::size_t>(size));
  if (!read_value(handle, {root, section, key, sub_key}, text))
    for (char byte : std::string_view(default_value ? default_value : "")) text.append(byte);
  text.append('\0');
  return xmlcfg::kDone;
}

int xmlcfg_set_int(void *handle, int value, const char *root, const char *section, const char *key,
                   const char *sub_key) {
  char digits[kMostDigits] = {};
  std::to_chars(digits, digits + sizeof digits - 1, value);
  return write_value(handle, {root, section, key, sub_key}, digits);
}

int xmlcfg_set_str(void *handle, const char *value, const char *root, const char *section, const char *key,
                   const char *sub_key) {
  return write_value(handle, {root, section, key, sub_key}, value);
}

int xmlcfg_close(void *handle, int) {
  if (!handle) return xmlcfg::kBadArgument;
  std::unique_ptr<OpenConfig> config(static_cast<OpenConfig *>(handle));
  if (config->incomplete) return xmlcfg::kNotStored;
  if (!config->document.changed()) return xmlcfg::kDone;
  return without_exceptions(xmlcfg::kNotStored,
                            [&] { return xmlcfg::replace(config->path, config->file, config->document.print()); });
}

}  // extern "C"
