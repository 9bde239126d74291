// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "trial.h"

#include <unistd.h>

#include <cerrno>
#include <condition_variable>
#include <cstdlib>
#include <mutex>
#include <thread>

#include "children.h"
#include "host.h"
#include "output_capture.h"
#include "real_function.h"

namespace calls {
namespace {

const Way &wayOf(const std::string &call, size_t number) {
  const std::vector<Way> &ways = waysOf(call);
  return ways[number % ways.size()];
}

// Lets calls fail as a trial wants it.
class FailingCalls {
 public:
  FailingCalls(const Trial &trial, const Undisturbed &undisturbed, Listener &listener)
      : trial_(trial),
        name_(undisturbed.calls[trial.position]),
        bound_(20 * undisturbed.calls.size() + 10000),
        listener_(listener) {}

  std::optional<int> operator()(const std::string &name, const std::string &object) {
    const size_t position = count_++;
    if (count_ > bound_) std::_Exit(kEndless);
    if (!mustFail(position, name)) return std::nullopt;
    const Way &way = wayOf(name, trial_.way);
    if (position > trial_.position && !way.for_ever) return std::nullopt;
    listener_.fails(name + " " + way.how + (object.empty() ? "" : ": " + object));
    errno = way.error;
    return way.result;
  }

 private:
  bool mustFail(size_t position, const std::string &name) const {
    if (position <= trial_.position) return position == trial_.position;
    return trial_.spread == Spread::all_from_here || (trial_.spread == Spread::same_from_here && name == name_);
  }

  Trial trial_;
  std::string name_;
  size_t bound_;
  size_t count_ = 0;
  Listener &listener_;
};

// Calls the library from another thread than the trials'. A lock that is still taken keeps that from ending.
class OtherThread {
 public:
  OtherThread() { std::thread(&OtherThread::run, this).detach(); }

  void call() {
    std::unique_lock<std::mutex> guard(mutex_);
    calling_ = true;
    changed_.notify_all();
    changed_.wait(guard, [this] { return !calling_; });
  }

 private:
  [[noreturn]] void run() {
    std::unique_lock<std::mutex> guard(mutex_);
    for (;;) {
      changed_.wait(guard, [this] { return calling_; });
      int channel = 0;
      trsProfiletoPlugCh(0, &channel);
      calling_ = false;
      changed_.notify_all();
    }
  }

  std::mutex mutex_;
  std::condition_variable changed_;
  bool calling_ = false;
};

// One for all trials of a process, and for as long as that lives.
OtherThread &otherThread() {
  static OtherThread *const thread = new OtherThread;
  return *thread;
}

// After a success everything is as without failures.
void compareSuccess(const EndState &end, const EndState &expected, Listener &listener) {
  for (const auto &aspect : end) {
    if (aspect.second != expected.at(aspect.first)) listener.differs(aspect.first);
  }
}

// After a failure no record is filled, nothing is stored by half, and nobody was told that something was done.
void compareFailure(const EndState &end, const Undisturbed &undisturbed, const Outputs &outputs, Listener &listener) {
  if (outputs.now() != outputs.before()) listener.differs("failed:records");
  if (undisturbed.stored.count(end.at("stored")) == 0) listener.differs("failed:stored");
  if (!end.at("log").empty()) listener.differs("failed:log");
  if (!end.at("datagrams").empty()) listener.differs("failed:datagrams");
  const std::string &links = end.at("links");
  const size_t made = links.rfind("exec /bin/ln");
  if (made != std::string::npos && links.find("exec /bin/rm", made) == std::string::npos) {
    listener.differs("failed:links");
  }
}

}  // namespace

Undisturbed runUndisturbed(const Scenario &scenario) {
  const contract::OutputCapture output(stdout);
  const contract::OutputCapture errors(stderr);
  Undisturbed undisturbed;
  World world;
  Outputs outputs;
  forgetChildren();
  scenario.describe(world);
  world.host.calls.ask([&](const std::string &name, const std::string &) {
    undisturbed.calls.push_back(name);
    undisturbed.stored.insert(storedText(world.host));
    return std::nullopt;
  });
  undisturbed.result = scenario.call(world, outputs);
  world.host.calls.askNobody();
  undisturbed.end = endState(world, undisturbed.result, outputs);
  undisturbed.stored.insert(undisturbed.end.at("stored"));
  undisturbed.left_behind = leftBehind(world);
  return undisturbed;
}

std::vector<Trial> trialsOf(const Undisturbed &undisturbed, const std::set<std::string> &failing) {
  const contract::Lines &calls = undisturbed.calls;
  std::vector<Trial> trials;
  for (size_t position = 0; position < calls.size(); ++position) {
    if (failing.count(calls[position]) == 0) continue;
    const std::vector<Way> &ways = waysOf(calls[position]);
    for (size_t way = 0; way < ways.size(); ++way) {
      trials.push_back({position, way, Spread::once});
      if (!ways[way].for_ever) continue;
      trials.push_back({position, way, Spread::all_from_here});
      trials.push_back({position, way, Spread::same_from_here});
    }
  }
  return trials;
}

std::string describe(const Trial &trial, const Undisturbed &undisturbed) {
  const std::string &call = undisturbed.calls[trial.position];
  std::string text = "call " + std::to_string(trial.position + 1) + ", " + call + " " + wayOf(call, trial.way).how;
  if (trial.spread == Spread::all_from_here) text += ", and all after it";
  if (trial.spread == Spread::same_from_here) text += ", and all after it of that name";
  return text;
}

void run(const Scenario &scenario, const Trial &trial, const Undisturbed &undisturbed, Listener &listener) {
  World world;
  Outputs outputs;
  forgetChildren();
  scenario.describe(world);
  listener.reaches(Stage::call);
  world.host.calls.ask(FailingCalls(trial, undisturbed, listener));
  const int result = scenario.call(world, outputs);
  world.host.calls.askNobody();

  listener.reaches(Stage::lock);
  const EndState end = endState(world, result, outputs);
  for (const std::string &left : leftBehind(world)) listener.leaves(left);
  world.host.config.failNothing();
  otherThread().call();

  listener.reaches(Stage::laws);
  if (scenario.tellsFailure(result)) {
    compareFailure(end, undisturbed, outputs, listener);
  } else {
    compareSuccess(end, undisturbed.end, listener);
  }
}

}  // namespace calls

extern "C" void exit(int status) noexcept {
  if (contract::Host::current() != nullptr) std::_Exit(status == 0 ? calls::kEndedByCall : 1);
  contract::realFunction<void(int)>("exit")(status);
  std::abort();
}
