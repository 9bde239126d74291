// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "host/login_service.h"

#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>

#include "output/output.h"

namespace usbdevctl {

namespace {

// Neither is a status that the library or a signal ends a process with.
constexpr int kYes = 10;
constexpr int kNo = 11;

[[noreturn]] void answer(int seconds, const std::function<int()> &question) {
  setpgid(0, 0);
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  std::signal(SIGTTOU, SIG_IGN);  // a terminal may stop what writes from the background, where a group of its own is
  std::signal(SIGALRM, SIG_DFL);
  alarm(static_cast<unsigned>(seconds));
  stdout = stderr;
  const int status = question() == 0 ? kYes : kNo;
  std::fflush(stdout);
  _exit(status);
}

}  // namespace

void addTimeout(Command &command, int &seconds) {
  seconds = kUsualPatience;
  command.add("--timeout", &seconds, "Seconds to wait for the host's answer, 30 if not given").limit(1);
}

Answer askLoginService(int seconds, const std::function<int()> &question) {
  const pid_t asker = fork();
  if (asker == 0) answer(seconds, question);
  int status = 0;
  if (asker < 0 || waitpid(asker, &status, 0) != asker) return Answer::broken;
  kill(-asker, SIGKILL);  // a command of the library may hang, too
  if (WIFSIGNALED(status) && WTERMSIG(status) == SIGALRM) return Answer::late;
  if (!WIFEXITED(status)) return Answer::broken;
  if (WEXITSTATUS(status) == kYes) return Answer::yes;
  return WEXITSTATUS(status) == kNo ? Answer::no : Answer::broken;
}

ExitStatus complainWithout(Answer answer, int seconds) {
  complain(answer == Answer::late ? "the login service did not answer within " + std::to_string(seconds) + " seconds"
                                  : "the login service broke off");
  return ExitStatus::failure;
}

}  // namespace usbdevctl
