/* Child processes of a test. */
#ifndef TESTS_HOST_PROCESSES_H
#define TESTS_HOST_PROCESSES_H

#include <sys/types.h>

#include <functional>
#include <string>
#include <vector>

/* Runs the work in a child, whose exit status is what the work returns. */
pid_t start_child(const std::function<int()> &work);

/* Tells whether one of them has not ended yet; wait_for_child() can still be asked about each. */
bool any_is_running(const std::vector<pid_t> &children);

/* The exit status, or -1 for a child that a signal ended. */
int wait_for_child(pid_t child);

/* What a shell command printed on standard output, and how it ended. */
struct Answer {
  std::string output;
  int status;
};
Answer run_command(const std::string &command);

#endif
