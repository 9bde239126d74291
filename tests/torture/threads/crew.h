// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Threads that all do their part of one work at the same moment, again and again.
#pragma once

#include <pthread.h>

#include <functional>
#include <thread>
#include <vector>

namespace torture {

class Crew {
 public:
  explicit Crew(int size);
  ~Crew();
  Crew(const Crew &) = delete;
  Crew &operator=(const Crew &) = delete;

  int size() const { return static_cast<int>(members_.size()); }

  /// Every member does the work, with its number from 0 on; returns when all have.
  void run(const std::function<void(int)> &work);

 private:
  void serve(int member);

  pthread_barrier_t begin_;
  pthread_barrier_t end_;
  std::function<void(int)> work_;  // none: go home
  std::vector<std::thread> members_;
};

}  // namespace torture
