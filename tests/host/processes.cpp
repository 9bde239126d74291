// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "processes.h"

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <exception>

namespace {

int exitStatus(int status) { return WIFEXITED(status) ? WEXITSTATUS(status) : -1; }

/// What is thrown ends the child, which must not go on as a second test program.
int resultOf(const std::function<int()> &work) {
  int result = 1;
  try {
    result = work();
  } catch (const std::exception &problem) {
    fprintf(stderr, "%s\n", problem.what());
  }
  fflush(nullptr);
  return result;
}

}  // namespace

pid_t startChild(const std::function<int()> &work) {
  fflush(nullptr);  // so that nothing is printed twice
  const pid_t child = fork();
  if (child == 0) _exit(resultOf(work));
  return child;
}

bool anyIsRunning(const std::vector<pid_t> &children) {
  return std::any_of(children.begin(), children.end(), [](pid_t child) {
    siginfo_t ended{};
    const int options = WEXITED | WNOHANG | WNOWAIT;
    return waitid(P_PID, static_cast<id_t>(child), &ended, options) == 0 && ended.si_pid == 0;
  });
}

int waitForChild(pid_t child) {
  int status = -1;
  return waitpid(child, &status, 0) == child ? exitStatus(status) : -1;
}

Answer runCommand(const std::string &command) {
  Answer answer;
  FILE *pipe = popen(command.c_str(), "r");
  char buffer[4096];
  for (size_t count; (count = fread(buffer, 1, sizeof buffer, pipe)) > 0;) answer.output.append(buffer, count);
  answer.status = exitStatus(pclose(pipe));
  return answer;
}
