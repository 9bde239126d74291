// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// A lock that its waiters get in the order in which they asked for it, so nobody waits for more than one turn of each
// other thread. A mutex alone promises no order: a thread that takes it again at once may keep it from all others.
#pragma once

#include <pthread.h>

namespace usbdev {

class FairLock {
 public:
  void take();
  void release();

 private:
  struct Waiter;

  pthread_mutex_t guard_ = PTHREAD_MUTEX_INITIALIZER;  // of what follows
  bool taken_ = false;
  Waiter *first_ = nullptr;
  Waiter **end_ = &first_;
};

}  // namespace usbdev
