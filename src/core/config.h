// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The configuration files and their one lock. A ConfigReader or ConfigWriter is a critical section: it takes the lock
// and opens the file, and its end closes and unlocks on every path. No function that takes the lock is called while one
// lives, and no command runs, except in a few places: those use a ReaderOverCommands or a WriterOverCommands. What a
// writer has set is stored when save() returns true, and not before.
#pragma once

#include "core/channel_keys.h"

namespace usbdev {

/// What a failed open prints on standard error.
enum class OpenFailure { usual, read, write, silent };

/// One section of an open file; its name has to live as long.
class Section {
 public:
  int get(const IntKey &key) const;
  int get(const IntKey &key, int otherwise) const;
  template <int N>
  void get(const TextKey<N> &key, char (&out)[N]) const {
    getText(key, out);
  }
  /// As get, for callers that know the key's size at run time only.
  void getText(const TextPath &key, char *out) const;
  Codec get(const CodecKey &key) const { return static_cast<Codec>(get(key, key.usual_default)); }

  void set(const IntKey &key, int value) const;
  void set(const CodecKey &key, Codec value) const { set(key, static_cast<int>(value)); }
  void set(const TextPath &key, const char *value) const;

 private:
  friend class OpenConfig;
  Section(void *handle, const char *name) : handle_(handle), name_(name) {}

  void *handle_;
  const char *name_;
};

/// The name of a channel's section, "ch0" to "ch9".
const char *channelName(int channel);

/// A file that someone else opened and closes.
class OpenConfig {
 public:
  explicit OpenConfig(void *handle) : handle_(handle) {}

  Section section(const char *name) const { return {handle_, name}; }
  Section channel(int number) const { return section(channelName(number)); }

 protected:
  void *handle_;
};

class ConfigSession : public OpenConfig {
 public:
  ConfigSession(const ConfigSession &) = delete;
  ConfigSession &operator=(const ConfigSession &) = delete;

  explicit operator bool() const { return result_ == kOpened; }

 protected:
  /// The codes that the host's library knows.
  enum class Mode : int { read = 0, write = 1 };

  ConfigSession(Mode mode, const char *path, OpenFailure failure);
  ~ConfigSession();

  /// Closes and unlocks, once; what the host's close returned.
  int end();

 private:
  static constexpr int kOpened = 1;
  int result_;
  bool ended_ = false;
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
  WriteSession(const char *path, OpenFailure failure) : ConfigSession(Mode::write, path, failure), path_(path) {}

 private:
  const char *path_;
};

class ConfigWriter : public WriteSession {
 public:
  explicit ConfigWriter(OpenFailure failure = OpenFailure::usual);
};

// Intended: Commands run while the lock is held.
/// These two keep the lock while commands run, so that nothing changes between a command's answer and what is made of
/// it.
class ReaderOverCommands : public ConfigReader {
  using ConfigReader::ConfigReader;
};

class WriterOverCommands : public ConfigWriter {
  using ConfigWriter::ConfigWriter;
};

/// The file in which the stream manager reports which profiles it serves.
class ProfileStateWriter : public WriteSession {
 public:
  ProfileStateWriter();
};

}  // namespace usbdev
