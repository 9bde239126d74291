// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// One change of a configuration file, and the rules that hold after it whatever failed on the way.
#pragma once

#include <cstddef>
#include <string>

#include "configuration.h"

/// A small file to change.
constexpr char kBefore[] = "<velmora><ch0><exists>0</exists></ch0></velmora>";

class ConfigurationChange {
 public:
  /// Makes a folder with the file, or without one: "".
  explicit ConfigurationChange(const std::string &before);

  /// Opens the file, sets two values and closes it.
  void run();

  bool stored() const { return opened_ == xmlcfg::kOpened && closed_ >= 0; }
  int openResult() const { return opened_; }
  int closeResult() const { return closed_; }
  static unsigned permissions();

  /// The file is the new one exactly when the results say so; nothing else is left, open or locked. Another file may be
  /// left only where it could not be removed.
  void expectRules(bool could_remove = true) const;

  static const std::string kFile;
  static const std::string kNewContent;
  static const std::string kFirstContent;  // of a file that is made to be written

 private:
  std::string contentAfterwards() const;

  std::string before_;
  std::size_t descriptors_;
  int opened_ = xmlcfg::kMissing;
  int closed_ = 0;
};
