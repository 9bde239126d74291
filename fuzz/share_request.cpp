// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What a visitor sends to the share page; share_request.py has the rules.
#include "embedded_python.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  static const fuzz::PythonTarget page("share_request");
  page.call(data, size);
  return 0;
}
