// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "crew.h"

namespace torture {

Crew::Crew(int size) {
  const auto all = static_cast<unsigned>(size) + 1;
  pthread_barrier_init(&begin_, nullptr, all);
  pthread_barrier_init(&end_, nullptr, all);
  for (int member = 0; member < size; ++member) members_.emplace_back([this, member] { serve(member); });
}

Crew::~Crew() {
  work_ = nullptr;
  pthread_barrier_wait(&begin_);
  for (std::thread &member : members_) member.join();
  pthread_barrier_destroy(&begin_);
  pthread_barrier_destroy(&end_);
}

void Crew::run(const std::function<void(int)> &work) {
  work_ = work;
  pthread_barrier_wait(&begin_);
  pthread_barrier_wait(&end_);
}

void Crew::serve(int member) {
  for (;;) {
    pthread_barrier_wait(&begin_);
    if (!work_) return;
    work_(member);
    pthread_barrier_wait(&end_);
  }
}

}  // namespace torture
