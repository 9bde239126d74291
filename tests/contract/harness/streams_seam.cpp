// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// fgets of the C library, over the streams of the current host.
#include <cstdio>
#include <cstring>

#include "host.h"
#include "real_function.h"

using contract::Host;
using contract::realFunction;

namespace {

using Fgets = char *(char *, int, FILE *);

// As of a program that dies while it writes: half of a line, and nothing after it.
char *readHalf(Fgets *real, char *line, int size, FILE *stream) {
  if (real(line, size, stream) == nullptr) return nullptr;
  line[strlen(line) / 2] = '\0';
  while (getc(stream) != EOF) continue;
  return line[0] == '\0' ? nullptr : line;
}

// What no program of the host prints.
char *readNonsense(Fgets *real, char *line, int size, FILE *stream) {
  static constexpr char kNonsense[] = "\x01%n%s\xFF=:-'\"999999999999";
  if (real(line, size, stream) == nullptr) return nullptr;
  snprintf(line, static_cast<size_t>(size), "%s", kNonsense);
  return line;
}

}  // namespace

extern "C" {

char *fgets(char *line, int size, FILE *stream) {
  static auto *const real = realFunction<Fgets>("fgets");
  Host *host = Host::current();
  const std::string name = host == nullptr ? "" : host->streamName(stream);
  if (name.empty()) return real(line, size, stream);
  const std::optional<int> failure = host->calls.failure("fgets", name);
  if (!failure) return real(line, size, stream);
  if (*failure == contract::kHalfALine) return readHalf(real, line, size, stream);
  if (*failure == contract::kNonsense) return readNonsense(real, line, size, stream);
  return nullptr;
}

}  // extern "C"
