// The configuration files and their one lock. A ConfigReader or ConfigWriter is a critical section: it takes the lock
// and opens the file, and its end closes and unlocks on every path. No command runs and no other function that takes
// the lock is called while one lives. What a writer has set is stored when save() says so, and not before.
#pragma once

#include "core/channel_keys.h"

namespace usbdev {

inline constexpr char kChannelFile[] = "/etc/config/usbdev.conf";
inline constexpr char kProfileStateFile[] = "/etc/config/vl_pfstate.conf";

/// What a failed open says on standard error.
enum class OpenFailure { usual, read, write, silent };

/// One section of an open file; its name has to live as long.
class Section {
 public:
  Section() = default;
  Section(void *handle, const char *name) : handle_(handle), name_(name) {}

  int get(const IntKey &key) const;
  int get(const IntKey &key, int otherwise) const;
  template <int N>
  void get(const TextKey<N> &key, char (&out)[N]) const {
    getText(key, out);
  }
  /// As get, for callers that know the key's size at run time only.
  void getText(const TextPath &key, char *out) const;

  void set(const IntKey &key, int value) const;
  void set(const TextPath &key, const char *value) const;

 private:
  void *handle_ = nullptr;
  const char *name_ = nullptr;
};

/// The name of a channel's section, "ch0" to "ch9".
const char *channelName(int channel);

/// A channel's section of a file that is already open.
Section channelSection(void *handle, int channel);

class ConfigSession {
 public:
  ConfigSession(const ConfigSession &) = delete;
  ConfigSession &operator=(const ConfigSession &) = delete;

  explicit operator bool() const { return result_ == kOpened; }
  int openResult() const { return result_; }
  void *handle() const { return handle_; }
  const Section &channel(int number) const { return channels_[number]; }

 protected:
  ConfigSession(int mode, const char *path, OpenFailure failure);
  ~ConfigSession();

  /// Closes and unlocks, once; what the host's close returned.
  int end();

 private:
  static constexpr int kOpened = 1;
  void *handle_ = nullptr;
  int result_;
  bool ended_ = false;
  Section channels_[kChannels];
};

class ConfigReader : public ConfigSession {
 public:
  explicit ConfigReader(OpenFailure failure = OpenFailure::usual);
};

class WriteSession : public ConfigSession {
 public:
  /// Stores what was set and ends the critical section. False, with a message, when nothing was stored.
  [[nodiscard]] bool save();

 protected:
  WriteSession(const char *path, OpenFailure failure) : ConfigSession(1, path, failure), path_(path) {}

 private:
  const char *path_;
};

class ConfigWriter : public WriteSession {
 public:
  explicit ConfigWriter(OpenFailure failure = OpenFailure::usual) : WriteSession(kChannelFile, failure) {}
};

/// The file in which the stream manager tells which profiles it serves.
class ProfileStateWriter : public WriteSession {
 public:
  ProfileStateWriter() : WriteSession(kProfileStateFile, OpenFailure::usual) {}
};

}  // namespace usbdev
