// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What stands between the library and the host in a soak: tools answer as the made-up host has it, and every so often
// as a real child does; the event log and the commands for links are noted, and really run.
#include <platform/alsa_ctl.h>
#include <platform/orda_exec.h>
#include <platform/vllog.h>
#include <unistd.h>

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "host.h"
#include "real_function.h"

using contract::Host;
using contract::realFunction;

namespace {

// Starting a child takes longer than most operations.
constexpr int kRealToolEach = 500;
constexpr int kRealProgramEach = 20;

bool isMadeUp(const std::string &path) {
  return contract::FakeFiles::isHostPath(path) && path.rfind("/etc/", 0) != 0 && path.rfind("/mnt/", 0) != 0;
}

// The same answer, from a child that prints it.
FILE *openChild(const std::string &command) {
  static auto *const real = realFunction<FILE *(const char *, const char *)>("popen");
  FILE *answer = Host::current()->commands.open(command, "re");
  char text[4096];
  const size_t size = fread(text, 1, sizeof text, answer);
  pclose(answer);
  setenv("ANSWER", std::string(text, size).c_str(), 1);
  return real("printf %s \"$ANSWER\"", "re");
}

}  // namespace

extern "C" {

int vq_sql_set_log(int level, const char *text, int reserved) {
  static auto *const real = realFunction<int(int, const char *, int)>("vq_sql_set_log");
  Host::current()->journal.add("log " + std::to_string(level) + " " + text);
  return real(level, text, reserved);
}

int orda_exec(int, int, int, const char *program, ...) {
  static auto *const real = realFunction<int(int, int, int, const char *, ...)>("orda_exec");
  const char *words[3] = {};
  va_list arguments;
  va_start(arguments, program);
  std::string line = std::string("exec ") + program;
  for (const char *&word : words) {
    word = va_arg(arguments, const char *);
    if (word == nullptr) break;
    line += std::string(" ") + word;
  }
  va_end(arguments);
  Host::current()->journal.add(line);
  static int programs = 0;
  if (++programs % kRealProgramEach == 0) return real(0, 0, 0, program, words[0], words[1], words[2], nullptr);
  const bool makes = program == std::string("/bin/ln");  // -sf TARGET LINK, else -rf LINK
  unlink(makes ? words[2] : words[1]);
  return makes ? symlink(words[1], words[2]) : 0;
}

int ac_get_Acard_info(int card, _acard_info *info) { return Host::current()->sound.describe(card, info); }

int ac_set_audio_volume(int card, int volume) { return Host::current()->sound.setVolume(card, volume); }

FILE *popen(const char *command, const char *mode) {
  static int commands = 0;
  return ++commands % kRealToolEach == 0 ? openChild(command) : Host::current()->commands.open(command, mode);
}

int pclose(FILE *stream) {
  static auto *const real = realFunction<int(FILE *)>("pclose");
  Host *host = Host::current();
  return host->commands.owns(stream) ? host->commands.close(stream) : real(stream);
}

int system(const char *command) { return Host::current()->commands.system(command); }

FILE *fopen(const char *path, const char *mode) {
  static auto *const real = realFunction<FILE *(const char *, const char *)>("fopen");
  Host *host = Host::current();
  return host != nullptr && isMadeUp(path) ? host->files.open(path, mode) : real(path, mode);
}

int fclose(FILE *stream) {
  static auto *const real = realFunction<int(FILE *)>("fclose");
  Host *host = Host::current();
  return host != nullptr && host->files.owns(stream) ? host->files.close(stream) : real(stream);
}

}  // extern "C"
