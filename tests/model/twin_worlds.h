// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// One made-up host in which the library lives, and the model of it: everything happens in both.
#pragma once

#include <ctime>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "host.h"
#include "world.h"

namespace model {

class TwinWorlds {
 public:
  // What the bits mean: 1 = the host serves one channel only, 2 = it encodes H.264, 4 and 8 = which cameras there are.
  explicit TwinWorlds(unsigned kind_of_host);
  virtual ~TwinWorlds();
  TwinWorlds(const TwinWorlds &) = delete;
  TwinWorlds &operator=(const TwinWorlds &) = delete;

  World world;
  contract::Host host;

  // --- What happens to the host, which the library sees when it next asks.
  void attach(int node, const Camera &camera);
  void detach(int node);
  void attachCard(int number, const Card &card);
  void detachCard(int number);
  // Another program writes a key, or removes it.
  virtual void store(int channel, const std::string &key, const std::string &value);
  virtual void forget(int channel, const std::string &key);
  // Lets time pass, and begins the next operation; the seconds are seen by what is stored with a moment.
  void begin(unsigned seconds);

  // --- What an operation does, and whether it does the same in both.
  template <typename... Values>
  void call(const std::string &name, const Values &...values) {
    std::ostringstream text;
    ((text << ", " << values), ...);
    called_ += (called_.empty() ? "" : "; ") + name + "(" + (text.str().empty() ? "" : text.str().substr(2)) + ")";
  }
  void returned(int library, int model);
  void wrote(const std::string &what, const std::string &library, const std::string &model);
  // Compares every byte.
  template <typename Record>
  void wroteRecord(const Record &library, const Record &model) {
    wrote("record", bytesOf(library), bytesOf(model));
  }

  // The operation since begin(), such as "vl_get_profileID(3) = -1".
  std::string operation() const { return called_; }
  // How the worlds differ after it; "" if they do not.
  std::string difference();

 protected:
  // Whether what is stored is compared after this operation.
  virtual bool looksAtStored() { return true; }
  // What the library has stored, "ch3/video/vnode" -> "2", and the datagrams that it has sent since begin().
  virtual std::map<std::string, std::string> stored();
  virtual std::map<std::string, std::string> storedStates();
  virtual std::vector<std::string> sent();

 private:
  template <typename Record>
  static std::string bytesOf(const Record &record) {
    return std::string(reinterpret_cast<const char *>(&record), sizeof record);
  }
  void listCameras();
  void listCards();
  void watch(const std::string &line);
  void compareStored();
  void compareLists(const std::vector<std::string> &library, const std::vector<std::string> &model);
  void compareCounters();
  void expectEverythingClosed();

  time_t moment_;
  unsigned ids_ = 0;
  int hashes_ = 1;
  size_t datagrams_ = 0;
  std::string called_;
  std::string differences_;
  const unsigned *counters_;
};

}  // namespace model
