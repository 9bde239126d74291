// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "core/fair_lock.h"

namespace usbdev {

/// Lives on the stack of the thread that waits.
struct FairLock::Waiter {
  pthread_cond_t called = PTHREAD_COND_INITIALIZER;
  bool has_turn = false;
  Waiter *next = nullptr;
};

void FairLock::take() {
  pthread_mutex_lock(&guard_);
  if (taken_) {
    Waiter self;
    *end_ = &self;
    end_ = &self.next;
    while (!self.has_turn) pthread_cond_wait(&self.called, &guard_);
  }
  taken_ = true;
  pthread_mutex_unlock(&guard_);
}

/// With a waiter the lock stays taken: it is handed over.
void FairLock::release() {
  pthread_mutex_lock(&guard_);
  Waiter *const next = first_;
  taken_ = next != nullptr;
  if (next != nullptr) {
    first_ = next->next;
    if (first_ == nullptr) end_ = &first_;
    next->has_turn = true;
    pthread_cond_signal(&next->called);
  }
  pthread_mutex_unlock(&guard_);
}

}  // namespace usbdev
