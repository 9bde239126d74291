/* One change of a configuration file, and the rules that hold after it whatever failed on the way. */
#ifndef TESTS_HOST_CONFIGURATION_CHANGE_H
#define TESTS_HOST_CONFIGURATION_CHANGE_H

#include <cstddef>
#include <string>

#include "configuration.h"

class ConfigurationChange {
 public:
  /* Makes a folder with the file, or without one: "". */
  explicit ConfigurationChange(const std::string &before);

  /* Opens the file, sets two values and closes it. */
  void run();

  bool stored() const { return opened_ == xmlcfg::kOpened && closed_ >= 0; }
  int open_result() const { return opened_; }
  int close_result() const { return closed_; }
  static unsigned permissions();

  /* The file is the new one exactly when the results say so; nothing else is left, open or locked. */
  void expect_rules() const;

  static const std::string kFile;

 private:
  std::string content_afterwards() const;

  std::string before_;
  std::size_t descriptors_;
  int opened_ = 0;
  int closed_ = 0;
};

#endif
