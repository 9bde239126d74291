/* The C interface of the XML configuration files; results.h tells what its functions answer. */
#include "platform/xmlcfg.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <memory>
#include <new>
#include <string>

#include "config_document.h"
#include "config_file.h"
#include "results.h"

namespace {

using xmlcfg::ValuePath;

constexpr int kReading = 0;
constexpr int kWriting = 1;
constexpr char kFirstContent[] = "<velmora/>\n";

struct OpenConfig {
  bool writable = false;
  xmlcfg::Descriptor file;  // a writer's holds the lock
  std::string path;
  xmlcfg::ConfigDocument document;
};

/* Callers are not C++: running out of memory must reach them as the operation's failure. */
template <typename Operation, typename Failure>
Failure without_exceptions(Failure failure, Operation operation) {
  try {
    return operation();
  } catch (const std::exception &) {
    return failure;
  }
}

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

bool read_value(void *handle, const ValuePath &path, std::string &value) {
  if (!handle || !is_complete(path)) return false;
  return without_exceptions(false, [&] { return static_cast<OpenConfig *>(handle)->document.get(path, value); });
}

int write_value(void *handle, const ValuePath &path, const char *value) {
  if (!handle || !value || !is_complete(path)) return xmlcfg::kBadArgument;
  auto *config = static_cast<OpenConfig *>(handle);
  if (!config->writable) return xmlcfg::kReadOnly;
  return without_exceptions(xmlcfg::kBadArgument,
                            [&] { return config->document.set(path, value) ? xmlcfg::kDone : xmlcfg::kBadArgument; });
}

}  // namespace

extern "C" {

int xmlcfg_open(int mode, const char *path, void **handle) {
  if (!path || !handle || (mode != kReading && mode != kWriting)) return xmlcfg::kBadArgument;
  return without_exceptions(xmlcfg::kUnreadable, [&] {
    auto config = std::make_unique<OpenConfig>();
    int result = load(mode, path, *config);
    if (result == xmlcfg::kOpened) *handle = config.release();
    return result;
  });
}

int xmlcfg_get_int(void *handle, int default_value, const char *root, const char *section, const char *key,
                   const char *sub_key) {
  std::string text;
  if (!read_value(handle, {root, section, key, sub_key}, text)) return default_value;
  int value = 0;
  const char *end = text.data() + text.size();
  auto [stop, problem] = std::from_chars(text.data(), end, value);
  return problem == std::errc() && stop == end ? value : default_value;
}

int xmlcfg_get_str(void *handle, const char *default_value, char *buffer, int size, const char *root,
                   const char *section, const char *key, const char *sub_key) {
  if (!buffer || size < 1) return xmlcfg::kBadArgument;
  std::string text;
  const char *value = default_value ? default_value : "";
  if (read_value(handle, {root, section, key, sub_key}, text)) value = text.c_str();
  memcpy(buffer, value, std::min(strlen(value) + 1, static_cast<std::size_t>(size)));
  return xmlcfg::kDone;
}

int xmlcfg_set_int(void *handle, int value, const char *root, const char *section, const char *key,
                   const char *sub_key) {
  return write_value(handle, {root, section, key, sub_key}, std::to_string(value).c_str());
}

int xmlcfg_set_str(void *handle, const char *value, const char *root, const char *section, const char *key,
                   const char *sub_key) {
  return write_value(handle, {root, section, key, sub_key}, value);
}

int xmlcfg_close(void *handle, int) {
  if (!handle) return xmlcfg::kBadArgument;
  std::unique_ptr<OpenConfig> config(static_cast<OpenConfig *>(handle));
  if (!config->document.changed()) return xmlcfg::kDone;
  return without_exceptions(xmlcfg::kNotStored,
                            [&] { return xmlcfg::replace(config->path, config->file, config->document.print()); });
}

}  // extern "C"
