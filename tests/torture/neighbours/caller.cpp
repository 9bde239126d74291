// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Makes one call of the library and reports what came of it: neighbour_caller REPORT CALL ARGUMENT. REPORT is the
// descriptor that the lines go to. A byte on standard input makes another call meanwhile, one that needs the lock.
// Two minutes of patience pass in five seconds here, a pause of the library's in no time.
#include <dlfcn.h>
#include <sys/resource.h>
#include <sys/select.h>
#include <unistd.h>
#include <usbdev/usbdev.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>
#include <thread>

#include "calls.h"

namespace {

FILE *report = nullptr;
long kilobytes_before = 0;

long peakKilobytes() {
  std::ifstream status("/proc/self/status");
  std::string word;
  while (status >> word) {
    if (word == "VmHWM:" && status >> word) return std::stol(word);
  }
  return -1;
}

// Also when the library ends the process.
void reportMemory() { std::fprintf(report, "grown %ld\n", peakKilobytes() - kilobytes_before); }

void callMeanwhile() {
  char byte = 0;
  while (read(STDIN_FILENO, &byte, 1) == 1) {
    int channel = 0;
    const int result = trsProfiletoPlugCh(0, &channel);
    std::fprintf(report, "other %d\n", result);
  }
}

// The sanitizers reserve more than that at their start.
void limitMemory() {
#ifndef __SANITIZE_ADDRESS__
  constexpr rlim_t kBytes = 256 << 20;
  const rlimit limit{kBytes, kBytes};
  setrlimit(RLIMIT_AS, &limit);
#endif
}

}  // namespace

int main(int count, char **words) {
  if (count != 4) return 2;
  report = fdopen(std::atoi(words[1]), "w");
  if (report == nullptr) return 2;
  setvbuf(report, nullptr, _IOLBF, 0);
  const neighbours::Call call = neighbours::callNamed(words[2]);
  if (call == nullptr) return 2;
  limitMemory();
  std::thread(callMeanwhile).detach();
  kilobytes_before = peakKilobytes();
  std::atexit(reportMemory);
  std::fprintf(report, "begun\n");
  const neighbours::Answer answer = call(words[3]);
  std::fprintf(report, "result %d\ntext %s\n", answer.result, neighbours::printable(answer.text).c_str());
  std::exit(0);
}

extern "C" {

int select(int count, fd_set *reading, fd_set *writing, fd_set *failing, timeval *patience) {
  static auto *const real = reinterpret_cast<decltype(&select)>(dlsym(RTLD_NEXT, "select"));
  if (patience == nullptr) return real(count, reading, writing, failing, patience);
  constexpr long kFaster = 24;
  const long microseconds = (patience->tv_sec * 1000000 + patience->tv_usec) / kFaster;
  timeval shorter{microseconds / 1000000, microseconds % 1000000};
  return real(count, reading, writing, failing, &shorter);
}

unsigned sleep(unsigned) { return 0; }

}  // extern "C"
