// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "settings/steps.h"

#include <algorithm>

#include "output/printable.h"
#include "profile/assignment.h"
#include "settings/stream_fit.h"

namespace usbdevctl {

namespace {

using Kind = Step::Kind;

std::size_t indexOf(const Camera &camera) { return static_cast<std::size_t>(camera.channel); }

std::string nameOf(Kind kind) {
  switch (kind) {
    case Kind::clear:
      return "clear profile";
    case Kind::forget:
      return "free the channel of profile";
    case Kind::bind:
      return "assign profile";
    case Kind::rename:
      return "name profile";
    case Kind::stream:
      return "set the stream of profile";
    case Kind::share:
      return "set the sharing of profile";
    case Kind::port_on:
      return "switch its port on";
    case Kind::port_off:
      return "switch its port off";
  }
  return "";
}

Refusal refusalOf(const Assignment &assignment, const ChannelRows &rows) {
  return {refusalText(assignment, rows), reasonWord(assignment), assignment.other, collisionWord(assignment.collision)};
}

/// The steps that apply everything of a profile except its camera.
void addSettings(Plan &plan, const Camera &camera, const ProfileSettings &wanted) {
  if (!wanted.name.empty()) plan.steps.push_back({Kind::rename, camera, wanted});
  plan.steps.push_back({Kind::stream, camera, wanted});
  if (wanted.share.enabled) plan.steps.push_back({Kind::share, camera, wanted});
}

/// The planning of an import, camera by camera.
class Import {
 public:
  explicit Import(ChannelRows rows) : rows_(std::move(rows)) {}

  void add(const CameraSettings &wanted, const CameraFacts &facts) {
    facts_ = &facts;
    ChannelRow &row = rows_[indexOf(facts.camera)];
    const bool was_on = row.slot_switch != false;
    if (wanted.port_on && !was_on) switchOn(row);
    if (wanted.profile) {
      addProfile(*wanted.profile, row);
    } else if (row.profile) {
      refuse("it has profile " + std::to_string(*row.profile) + ", and the settings have none for it");
    }
    if (!wanted.port_on && was_on) addStep(Kind::port_off, {});
  }

  Plan plan;

 private:
  void refuse(const std::string &why) { plan.refusals.push_back({cameraText(facts_->camera) + ": " + why}); }

  void addStep(Kind kind, const ProfileSettings &settings) { plan.steps.push_back({kind, facts_->camera, settings}); }

  void switchOn(ChannelRow &row) {
    row.slot_switch = true;
    const int rival = streamingRival(rows_, facts_->camera.channel, facts_->collisions);
    if (rival != -1) refuse("with its port on, it would wait for channel " + std::to_string(rival));
    addStep(Kind::port_on, {});
  }

  void addProfile(const ProfileSettings &wanted, const ChannelRow &row) {
    const int channel = facts_->camera.channel;
    const Assignment assignment = judgeAssignment(rows_, channel, wanted.profile, facts_->collisions);
    if (!isHarmless(assignment)) {
      plan.refusals.push_back(refusalOf(assignment, rows_));
      return;
    }
    const bool bound = assignment.verdict == Verdict::bound;
    if (!bound) {
      addStep(Kind::bind, wanted);
      rows_ = afterAssignment(rows_, channel, wanted.profile, facts_->collisions);
    }
    const ProfileSettings current = bound && facts_->current ? *facts_->current : ProfileSettings();
    if (wanted.name != current.name) addStep(Kind::rename, wanted);
    if (!(wanted.stream == current.stream)) addStream(wanted, row);
    if (!(wanted.share == current.share)) addStep(Kind::share, wanted);
  }

  void addStream(const ProfileSettings &wanted, const ChannelRow &row) {
    if (row.slot_switch == false) return refuse("its stream cannot be set while its port is off");
    if (facts_->formats.count <= 0) return refuse("it offers no format that can be used");
    const StreamFit fit = fitStream(wanted.stream, facts_->formats);
    for (const StreamDifference &difference : fit.differences) {
      refuse("it does not offer the stream: " + differenceText(difference));
    }
    ProfileSettings fitted = wanted;
    fitted.stream = fit.stream;
    addStep(Kind::stream, fitted);
  }

  ChannelRows rows_;
  const CameraFacts *facts_ = nullptr;
};

const CameraFacts *findFacts(const std::vector<CameraFacts> &facts, const CameraSettings &wanted) {
  const auto found = std::find_if(facts.begin(), facts.end(), [&wanted](const CameraFacts &camera) {
    return camera.camera.row.slot == wanted.port && camera.camera.row.device == wanted.device;
  });
  return found == facts.end() ? nullptr : &*found;
}

/// The channels after the source lost its profile: those that wait for it then wait for its successor, or not at all.
ChannelRows afterClearing(ChannelRows rows, const Camera &source) {
  rows[indexOf(source)].profile.reset();
  int successor = -1;
  for (std::size_t channel = 0; channel < rows.size(); ++channel) {
    ChannelRow &row = rows[channel];
    if (row.parked_behind != source.channel) continue;
    row.parked_behind.reset();
    if (successor == -1 && streams(row)) {
      successor = static_cast<int>(channel);
    } else if (successor != -1) {
      row.parked_behind = successor;
    }
  }
  return rows;
}

void refuseUnlessStreamable(Plan &plan, const CameraFacts &target) {
  const std::string camera = cameraText(target.camera);
  if (target.camera.row.slot_switch == false) {
    plan.refusals.push_back({camera + ": its port is off, and a stream cannot be set while it is", kPortOff});
  } else if (target.formats.count <= 0) {
    plan.refusals.push_back({camera + ": it offers no format that can be used", kNoFormat});
  }
}

bool has(const std::vector<Step> &steps, Kind kind) {
  return std::any_of(steps.begin(), steps.end(), [kind](const Step &step) { return step.kind == kind; });
}

}  // namespace

std::string stepText(const Step &step) {
  const bool of_port = step.kind == Kind::port_on || step.kind == Kind::port_off;
  const std::string profile = of_port ? "" : " " + std::to_string(step.settings.profile);
  return nameOf(step.kind) + profile + ": " + cameraText(step.camera);
}

Plan planImport(const Settings &settings, ChannelRows rows, const std::vector<CameraFacts> &facts) {
  Import import(std::move(rows));
  for (const CameraSettings &wanted : settings) {
    if (const CameraFacts *found = findFacts(facts, wanted)) {
      import.add(wanted, *found);
    } else {
      import.plan.refusals.push_back(
          {"no camera \"" + printable(wanted.device) + "\" is attached to port " + printable(wanted.port)});
    }
  }
  return import.plan;
}

Plan planMove(const ProfileSettings &settings, const Camera &source, const CameraFacts &target, ChannelRows rows) {
  Plan plan;
  const int channel = target.camera.channel;
  plan.steps.push_back({Kind::clear, source, settings});
  rows = afterClearing(std::move(rows), source);
  Assignment assignment = judgeAssignment(rows, channel, settings.profile, target.collisions);
  if (assignment.verdict == Verdict::port_kept && assignment.other == source.channel) {
    plan.steps.push_back({Kind::forget, source, settings});
    rows[indexOf(source)] = {};
    assignment = judgeAssignment(rows, channel, settings.profile, target.collisions);
  }
  if (!isHarmless(assignment)) plan.refusals.push_back(refusalOf(assignment, rows));
  refuseUnlessStreamable(plan, target);
  if (!plan.refusals.empty()) return plan;
  plan.steps.push_back({Kind::bind, target.camera, settings});
  const StreamFit fit = fitStream(settings.stream, target.formats);
  plan.differences = fit.differences;
  ProfileSettings fitted = settings;
  fitted.stream = fit.stream;
  addSettings(plan, target.camera, fitted);
  return plan;
}

Plan planReturn(const ProfileSettings &settings, const Camera &source, const std::vector<Step> &done) {
  Plan plan;
  if (source.row.state != ChannelState::plugged || has(done, Kind::forget)) {
    plan.refusals.push_back(
        {"the camera that had it is away, and the library assigns profiles only to attached cameras", kNotPutBack});
    return plan;
  }
  for (const Step &step : done) {
    if (step.kind == Kind::bind) plan.steps.push_back({Kind::clear, step.camera, settings});
  }
  plan.steps.push_back({Kind::bind, source, settings});
  addSettings(plan, source, settings);
  return plan;
}

}  // namespace usbdevctl
