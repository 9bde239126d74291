// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// A login service on the usual port of the loopback address, which accepts everybody.
#pragma once

#include <atomic>
#include <thread>

namespace soak {

class LoginService {
 public:
  LoginService();
  ~LoginService();
  LoginService(const LoginService &) = delete;
  LoginService &operator=(const LoginService &) = delete;

  int requests() const { return requests_; }

 private:
  void serve();

  int listener_;
  std::atomic<int> requests_{0};
  std::thread thread_;
};

}  // namespace soak
