// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The configuration files, in memory. This defines the functions of libvlxmlcfg.so, which read and write them.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "journal.h"

namespace contract {

inline constexpr char kChannelFile[] = "/etc/config/usbdev.conf";
inline constexpr char kProfileStateFile[] = "/etc/config/vl_pfstate.conf";

class FakeConfig {
 public:
  using Values = std::map<std::string, std::string>;  // "ch3/video/vnode" -> "2"

  explicit FakeConfig(Journal &journal) : journal_(journal) {}

  // Values of the channel file, by "SECTION/KEY" or "SECTION/KEY/SUBKEY".
  void set(const std::string &path, const std::string &value);
  void set(const std::string &path, int value) { set(path, std::to_string(value)); }
  void erase(const std::string &path);
  bool has(const std::string &path) const;
  std::string text(const std::string &path) const;  // "" where missing
  Values values(const std::string &file = kChannelFile) const;
  // Every value written through a handle so far, in order, as "ch3/exists=1".
  Lines writes() const;
  // How many values were asked for through a handle so far.
  int reads() const;

  // From now on opens fail with this code; 1 lets them succeed again.
  void failReadOpens(int code) { read_open_result_ = code; }
  void failWriteOpens(int code) { write_open_result_ = code; }
  // The n-th open from now (1 = the next) fails with this code, whatever its mode.
  void failOpenNumber(int number, int code);
  // The n-th close of a write handle from now gives this code; a negative one has stored nothing.
  void failWriteCloseNumber(int number, int code);
  // From now on the closes of read handles give this code.
  void failReadCloses(int code) { read_close_result_ = code; }
  // This path cannot be written.
  void refuseWritesOf(const std::string &path) { refused_.insert(path); }
  void failNothing();
  // Just before the n-th open from now, what another writer does between two passes.
  void beforeOpenNumber(int number, std::function<void()> effect);

  // From now on opens and closes let another thread go first. Not always, because on a busy machine each time may cost
  // a share of the processor.
  void expectManyThreads() { many_threads_ = true; }

  // Handles that are open now, of all threads and of the calling one.
  int openHandles() const;
  bool openInThisThread() const;

  // A read handle on the channel file that the library's caller has open meanwhile.
  void *openForCaller();

  // The interface itself.
  int open(int mode, const char *file, void **handle);
  int close(void *handle, int flag);
  bool isWriting(void *handle) const;
  bool read(void *handle, const std::string &path, std::string &value);
  int write(void *handle, const std::string &path, const std::string &value);

 private:
  // Values that a file and its open handles share, because a copy at each open takes a third of a test's time.
  class SharedValues {
   public:
    const Values &get() const { return *values_; }
    // To be changed, which nobody else sees.
    Values &own();

   private:
    std::shared_ptr<Values> values_ = std::make_shared<Values>();
  };

  struct Handle {
    std::string file;
    bool writing = false;
    bool of_caller = false;
    std::thread::id opener;
    SharedValues pending;
  };

  void letOthersIn() const;
  std::function<void()> dueEffect();
  int openResult(int mode);
  int closeResult(bool writing);
  int countOpen() const;
  void *handleFor(int mode, const std::string &file, bool of_caller);
  Handle *checked(void *handle, const char *operation);

  Journal &journal_;
  mutable std::mutex mutex_;
  std::map<std::string, SharedValues> files_;
  std::vector<std::unique_ptr<Handle>> handles_;  // the open ones
  std::vector<std::unique_ptr<Handle>> closed_;   // stay, so that a use after close is seen
  Lines writes_;
  int reads_ = 0;
  std::set<std::string> refused_;
  int read_open_result_ = 1;
  int write_open_result_ = 1;
  int failing_open_ = 0;
  int failing_open_result_ = 1;
  int failing_write_close_ = 0;
  int failing_write_close_result_ = 1;
  int read_close_result_ = 1;
  int awaited_open_ = 0;
  bool many_threads_ = false;
  std::function<void()> before_open_;
};

}  // namespace contract
