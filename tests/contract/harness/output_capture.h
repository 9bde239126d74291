// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What the program writes to its standard error or standard output while this exists.
#pragma once

#include <cstdio>
#include <string>

namespace contract {

class OutputCapture {
 public:
  explicit OutputCapture(FILE *stream = stderr);
  ~OutputCapture();
  OutputCapture(const OutputCapture &) = delete;
  OutputCapture &operator=(const OutputCapture &) = delete;

  // Everything since the construction.
  std::string text();

 private:
  FILE *stream_;
  int descriptor_;
  int saved_;
  FILE *file_;
};

}  // namespace contract
