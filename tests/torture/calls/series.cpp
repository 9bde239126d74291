// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "series.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>

#include "exceptions.h"
#include "thoroughness.h"

namespace calls {
namespace {

constexpr unsigned kPatience = 20;  // seconds for one trial
constexpr size_t kMostExceptions = 256;
constexpr size_t kMostTexts = 200;
constexpr size_t kTextSize = 400;
constexpr int kLaws = 6;

constexpr const char *kLawNames[kLaws] = {"crashes",       "calls that did not return", "locks left taken",
                                          "things leaked", "things left done by half",  "false successes"};

// What the trial that runs now has done; also seen when its process has died.
struct Shared {
  size_t next;
  size_t trials;
  Stage stage;
  size_t failed_count;
  char failed[64][kTextSize];
  size_t excused;
  size_t breaches[kLaws];
  bool used[kMostExceptions];
  size_t text_count;
  char texts[kMostTexts][kTextSize];
};

class Report : public Listener {
 public:
  Report(const Scenario &scenario, const Undisturbed &undisturbed, const std::vector<Trial> &trials, Shared &shared)
      : scenario_(scenario), undisturbed_(undisturbed), trials_(trials), shared_(shared) {}

  void begin() {
    ++shared_.trials;
    shared_.failed_count = 0;
    shared_.stage = Stage::call;
  }
  void reaches(Stage stage) override { shared_.stage = stage; }
  void fails(const std::string &call) override {
    // Of a series of calls that fail alike one is enough.
    if (shared_.failed_count == std::size(shared_.failed) || isKnown(call)) return;
    snprintf(shared_.failed[shared_.failed_count++], kTextSize, "%s", call.c_str());
  }
  void leaves(const std::string &what) override {
    const contract::Lines &usual = undisturbed_.left_behind;
    if (std::find(usual.begin(), usual.end(), what) == usual.end()) judge(Law::leak, kLeft, what);
  }
  void differs(const std::string &aspect) override {
    judge(aspect.rfind("failed:", 0) == 0 ? Law::half_done : Law::false_success, aspect);
  }
  void dies(int status);
  // For a trial that did not return: one is enough of a scenario.
  bool hasWaited() const { return count(Law::hang) + count(Law::lock) != 0; }

 private:
  bool isKnown(const std::string &call) const {
    for (size_t i = 0; i < shared_.failed_count; ++i) {
      if (call == shared_.failed[i]) return true;
    }
    return false;
  }
  size_t count(Law law) const { return shared_.breaches[static_cast<int>(law)]; }
  bool isExcused(const std::string &aspect) const;
  void judge(Law law, const std::string &aspect, const std::string &detail = "");

  const Scenario &scenario_;
  const Undisturbed &undisturbed_;
  const std::vector<Trial> &trials_;
  Shared &shared_;
};

// One exception is enough, so one that only repeats another is never used.
bool Report::isExcused(const std::string &aspect) const {
  for (size_t i = 0; i < shared_.failed_count; ++i) {
    for (size_t number = 0; number < exceptions().size(); ++number) {
      if (!covers(exceptions()[number], scenario_.function, shared_.failed[i], aspect)) continue;
      shared_.used[number] = true;
      return true;
    }
  }
  return false;
}

void Report::judge(Law law, const std::string &aspect, const std::string &detail) {
  if (law != Law::crash && isExcused(aspect)) {
    ++shared_.excused;
    return;
  }
  ++shared_.breaches[static_cast<int>(law)];
  if (shared_.text_count == kMostTexts) return;
  std::string calls;
  for (size_t i = 0; i < shared_.failed_count; ++i) calls += std::string("\n    ") + shared_.failed[i];
  snprintf(shared_.texts[shared_.text_count++], kTextSize, "%s: %s: %s %s(%s)%s", kLawNames[static_cast<int>(law)],
           scenario_.name().c_str(), aspect.c_str(), detail.c_str(),
           describe(trials_[shared_.next], undisturbed_).c_str(), calls.c_str());
}

void Report::dies(int status) {
  const bool endless = WIFEXITED(status) && WEXITSTATUS(status) == kEndless;
  if (WIFEXITED(status) && WEXITSTATUS(status) == kEndedByCall) {
    judge(Law::false_success, kProcess);
  } else if (endless || (WIFSIGNALED(status) && WTERMSIG(status) == SIGALRM)) {
    judge(shared_.stage == Stage::lock ? Law::lock : Law::hang, "time");
  } else {
    judge(Law::crash, "status " + std::to_string(status));
  }
}

[[noreturn]] void runFromNext(const Scenario &scenario, const std::vector<Trial> &trials,
                              const Undisturbed &undisturbed, Shared &shared, Report &report) {
  const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
  dup2(nowhere, STDOUT_FILENO);
  dup2(nowhere, STDERR_FILENO);
  for (; shared.next < trials.size(); ++shared.next) {
    alarm(kPatience);
    report.begin();
    run(scenario, trials[shared.next], undisturbed, report);
  }
  _exit(0);
}

std::vector<Trial> chosen(const std::vector<Trial> &all) {
  std::vector<Trial> some;
  for (size_t number = 0; number < all.size(); number += trialStep()) some.push_back(all[number]);
  return some;
}

// The last trial of the same failure. It ends the process, so what would fail after it makes no difference.
size_t lastAlike(const std::vector<Trial> &trials, size_t number) {
  const Trial &trial = trials[number];
  while (number + 1 < trials.size() && trials[number + 1].position == trial.position &&
         trials[number + 1].way == trial.way) {
    ++number;
  }
  return number;
}

void add(const Shared &shared, Findings &findings) {
  findings.excused += shared.excused;
  for (int law = 0; law < kLaws; ++law) findings.breaches[static_cast<Law>(law)] += shared.breaches[law];
  for (size_t i = 0; i < shared.text_count; ++i) findings.texts.emplace_back(shared.texts[i]);
  for (size_t i = 0; i < kMostExceptions; ++i) {
    if (shared.used[i]) findings.used_exceptions.insert(i);
  }
}

}  // namespace

size_t trialStep() {
#ifdef USBDEV_FEWER_CASES
  return static_cast<size_t>(torture::times(4, 1));
#else
  return 1;
#endif
}

void runAllTrials(const Scenario &scenario, const Undisturbed &undisturbed, const contract::Names &failing,
                  Findings &findings) {
  const std::vector<Trial> trials = chosen(trialsOf(undisturbed, failing));
  void *const memory = mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  Shared &shared = *new (memory) Shared{};
  Report report(scenario, undisturbed, trials, shared);
  for (; shared.next < trials.size() && !report.hasWaited(); ++shared.next) {
    fflush(nullptr);
    const pid_t child = fork();
    if (child == 0) runFromNext(scenario, trials, undisturbed, shared, report);
    int status = 0;
    waitpid(child, &status, 0);
    if (shared.next < trials.size()) {
      report.dies(status);
      shared.next = lastAlike(trials, shared.next);
    }
  }
  if (!trials.empty()) ++findings.scenarios;
  findings.trials += shared.trials;
  for (const std::string &call : undisturbed.calls) {
    if (failing.count(call) == 0) continue;
    ++findings.calls;
    findings.failed.insert(call);
  }
  add(shared, findings);
  munmap(memory, sizeof(Shared));
}

void Findings::add(const Findings &more) {
  scenarios += more.scenarios;
  calls += more.calls;
  trials += more.trials;
  excused += more.excused;
  for (const auto &breach : more.breaches) breaches[breach.first] += breach.second;
  texts.insert(texts.end(), more.texts.begin(), more.texts.end());
  used_exceptions.insert(more.used_exceptions.begin(), more.used_exceptions.end());
  failed.insert(more.failed.begin(), more.failed.end());
}

std::string describe(const Findings &findings) {
  std::string text = std::to_string(findings.scenarios) + " scenarios, " + std::to_string(findings.calls) +
                     " outside calls, " + std::to_string(findings.trials) + " failing runs: ";
  for (int law = 0; law < kLaws; ++law) {
    const auto found = findings.breaches.find(static_cast<Law>(law));
    text += std::to_string(found == findings.breaches.end() ? 0 : found->second) + " " + kLawNames[law] + ", ";
  }
  return text + std::to_string(findings.excused) + " described differences";
}

}  // namespace calls
