// The configuration files and their one lock. A ConfigReader or ConfigWriter is a critical section: it takes the lock
// and opens the file, and its end closes and unlocks on every path. No command runs and no other function that takes
// the lock is called while one lives.
#pragma once

#include <cstddef>

#include "core/channel_keys.h"

namespace usbdev {

inline constexpr char kChannelFile[] = "/etc/config/usbdev.conf";
inline constexpr char kProfileStateFile[] = "/etc/config/vl_pfstate.conf";

/// What a failed open says on standard error.
enum class OpenFailure { usual, read, write, silent };

/// One section of an open file, "ch0" to "ch9" in the channel file.
class Section {
 public:
  Section(void *handle, const char *pattern, int number);

  int get(const IntKey &key) const { return get(key, key.usual_default); }
  int get(const IntKey &key, int otherwise) const;
  template <std::size_t N>
  void get(const TextKey<N> &key, char (&out)[N], const char *otherwise = "") const {
    getText(key.key, key.sub_key, out, N, otherwise);
  }

  void set(const IntKey &key, int value) const;
  template <std::size_t N>
  void set(const TextKey<N> &key, const char *value) const {
    setText(key.key, key.sub_key, value);
  }

 private:
  void getText(const char *key, const char *sub_key, char *out, std::size_t size, const char *otherwise) const;
  void setText(const char *key, const char *sub_key, const char *value) const;

  void *handle_;
  char name_[16];
};

/// A channel's section of a file that is already open.
inline Section channelSection(void *handle, int channel) { return {handle, "ch%d", channel}; }

class ConfigSession {
 public:
  ConfigSession(const ConfigSession &) = delete;
  ConfigSession &operator=(const ConfigSession &) = delete;

  explicit operator bool() const { return result_ == kOpened; }
  int openResult() const { return result_; }
  void *handle() const { return handle_; }
  Section channel(int number) const { return channelSection(handle_, number); }

 protected:
  ConfigSession(int mode, const char *path, OpenFailure failure);
  ~ConfigSession();

 private:
  static constexpr int kOpened = 1;
  void *handle_ = nullptr;
  int result_;
};

class ConfigReader : public ConfigSession {
 public:
  explicit ConfigReader(OpenFailure failure = OpenFailure::usual) : ConfigSession(0, kChannelFile, failure) {}
};

class ConfigWriter : public ConfigSession {
 public:
  explicit ConfigWriter(OpenFailure failure = OpenFailure::usual, const char *path = kChannelFile)
      : ConfigSession(1, path, failure) {}
};

}  // namespace usbdev
