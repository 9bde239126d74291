// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The fixture of every contract test: a host to describe, and the rules that hold after every call of the library.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <usbdev/usbdev.h>

#include <string>

#include "host.h"
#include "output_capture.h"

namespace contract {

class ContractTest : public testing::Test {
 protected:
  // On purpose, the library leaves this file or command open on the path that the test takes.
  void allowLeftOpen(const std::string &path) { allowed_open_.push_back(path); }
  void TearDown() override;

  Host host;

 private:
  void expectEverythingClosed();
  void expectLockFree();

  Lines allowed_open_;
};

// The messages of a configuration that cannot be opened or stored.
std::string openFailure(int code);
std::string closeFailure(int code);

}  // namespace contract
