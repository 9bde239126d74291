// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "ways_to_fail.h"

#include <cerrno>

#include "outside_calls.h"

namespace calls {
namespace {

constexpr Way kWays[] = {
    // Commands and programs.
    {"popen", "no process", 0, EAGAIN},
    {"pclose", "no such child", -1, ECHILD},
    {"pclose", "the command failed", 1 << 8},
    {"system", "no process", -1, EAGAIN},
    {"system", "the command failed", 1 << 8},
    {"orda_exec", "not run", -1},
    {"orda_exec", "the program failed", 1},
    {"posix_spawn", "no process", EAGAIN},
    {"waitpid", "no such child", -1, ECHILD},
    {"waitpid", "interrupted", -1, EINTR, false},
    {"waitpid", "the program failed", 1},
    // Streams and files.
    {"fopen", "no descriptor", 0, EMFILE},
    {"fclose", "an error", -1, EIO},
    {"fgets", "the end", 0},
    {"fgets", "half a line", contract::kHalfALine},
    {"fgets", "nonsense", contract::kNonsense},
    {"stat", "an error", -1, EIO},
    {"lstat", "an error", -1, EIO},
    // The host's libraries.
    {"xmlcfg_open", "0", 0},
    {"xmlcfg_open", "-1", -1},
    {"xmlcfg_open", "2", 2},
    {"xmlcfg_close", "an error", -1},
    {"xmlcfg_get_int", "missing", 0},
    {"xmlcfg_get_str", "nothing copied", 0},
    {"xmlcfg_get_str", "no terminator", contract::kFilled},
    {"xmlcfg_set_int", "an error", -1},
    {"xmlcfg_set_str", "an error", -1},
    {"vq_sql_set_log", "an error", -1},
    {"ac_get_Acard_info", "an error", -1},
    {"ac_set_audio_volume", "an error", -1},
    // Connections.
    {"socket", "no descriptor", -1, EMFILE},
    {"close", "an error", -1, EIO},
    {"gethostbyname_r", "not found", 0},
    {"gethostbyname_r", "no room", ERANGE},
    {"connect", "refused", -1, ECONNREFUSED},
    {"connect", "interrupted", -1, EINTR, false},
    {"sendto", "unreachable", -1, ENETUNREACH},
    {"sendto", "a part", 10},
    {"send", "broken", -1, EPIPE},
    {"send", "interrupted", -1, EINTR, false},
    {"send", "a part", contract::kHalfOfTheBytes},
    {"select", "an error", -1, EBADF},
    {"select", "interrupted", -1, EINTR, false},
    {"select", "time-out", 0},
    {"select", "not flagged", 1},
    {"recv", "broken", -1, ECONNRESET},
    {"recv", "interrupted", -1, EINTR, false},
    {"recv", "the end", 0},
    {"read", "broken", -1, ECONNRESET},
    {"read", "interrupted", -1, EINTR, false},
    {"read", "the end", 0},
    {"sleep", "woken", 1},
    // Shared memory.
    {"shmget", "no room", -1, ENOSPC},
    {"shmat", "not allowed", -1, EACCES},
    {"shmdt", "an error", -1, EINVAL},
};

std::map<std::string, std::vector<Way>> byCall() {
  std::map<std::string, std::vector<Way>> ways;
  for (const Way &way : kWays) ways[way.call].push_back(way);
  return ways;
}

const std::map<std::string, std::vector<Way>> &table() {
  static const std::map<std::string, std::vector<Way>> ways = byCall();
  return ways;
}

}  // namespace

const std::vector<Way> &waysOf(const std::string &call) { return table().at(call); }

std::vector<std::string> failableCalls() {
  std::vector<std::string> names;
  for (const auto &entry : table()) names.push_back(entry.first);
  return names;
}

const std::map<std::string, std::string> &neverFailing() {
  static const char of_text[] = "works on memory that it is given";
  static const char of_message[] = "prints a message, which no result depends on";
  static const std::map<std::string, std::string> reasons = {
      {"atof", of_text},
      {"htonl", of_text},
      {"htons", of_text},
      {"inet_addr", of_text},
      {"memcpy", of_text},
      {"memmove", of_text},
      {"memset", of_text},
      {"snprintf", of_text},
      {"strchr", of_text},
      {"strcmp", of_text},
      {"strcspn", of_text},
      {"strlen", of_text},
      {"strncmp", of_text},
      {"strnlen", of_text},
      {"strpbrk", of_text},
      {"strstr", of_text},
      {"strtod", of_text},
      {"strtol", of_text},
      {"vsnprintf", of_text},
      {"fprintf", of_message},
      {"fputs", of_message},
      {"fwrite", of_message},
      {"perror", of_message},
      {"printf", of_message},
      {"puts", of_message},
      {"stderr", of_message},
      {"stdout", of_message},
      {"exit", "does not return"},
      {"__stack_chk_fail", "does not return"},
      {"fdelt", "ends a program whose descriptor is too large for a set; the library tests it before"},
      {"getpid", "always has a result"},
      {"rand", "always has a result"},
      {"srand", "has no result"},
      {"time", "fails only for a pointer, and is given none"},
      {"localtime_r", "fails only for years that no clock reaches"},
      {"pthread_cond_signal", "always succeeds"},
      {"pthread_cond_wait", "always succeeds"},
      {"pthread_mutex_lock", "fails only for other kinds of locks"},
      {"pthread_mutex_unlock", "fails only for other kinds of locks"},
      {"environ", "is a variable"},
      {"__environ", "is a variable"},
      {"__errno_location", "is a variable"},
  };
  return reasons;
}

}  // namespace calls
