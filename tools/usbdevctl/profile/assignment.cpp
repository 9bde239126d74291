// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "profile/assignment.h"

#include "camera/camera.h"
#include "output/numbers.h"

namespace usbdevctl {

namespace {

constexpr int kNobody = -1;

std::string named(const ChannelRows &rows, int channel) { return cameraText({channel, rowOf(rows, channel)}); }

int holderOf(const ChannelRows &rows, int profile) {
  for (std::size_t channel = 0; channel < rows.size(); ++channel) {
    if (rows[channel].profile == profile) return static_cast<int>(channel);
  }
  return kNobody;
}

/// The library takes the first channel with the port whose device is not just away: that of a displaced camera too.
int firstAtPort(const ChannelRows &rows, const std::string &port) {
  for (std::size_t channel = 0; channel < rows.size(); ++channel) {
    const ChannelRow &row = rows[channel];
    const bool counts = row.state == ChannelState::plugged || row.state == ChannelState::displaced;
    if (counts && row.slot == port) return static_cast<int>(channel);
  }
  return kNobody;
}

/// What the library itself refuses, or has done already.
Assignment judgeBinding(const ChannelRows &rows, int channel, int profile) {
  Assignment assignment{Verdict::free, channel, profile};
  const ChannelRow &row = rowOf(rows, channel);
  const auto because = [&assignment](Verdict verdict, int other) {
    assignment.verdict = verdict;
    assignment.other = other;
    return assignment;
  };
  if (row.profile == profile) return because(Verdict::bound, kNobody);
  if (row.state != ChannelState::plugged) return because(Verdict::away, kNobody);
  const int first = firstAtPort(rows, row.slot);
  if (first != channel) return because(Verdict::port_kept, first);
  const int holder = holderOf(rows, profile);
  if (holder != kNobody) return because(Verdict::profile_taken, holder);
  return row.profile ? because(Verdict::camera_taken, kNobody) : assignment;
}

std::string rivalAdvice(const Assignment &assignment, const ChannelRows &rows) {
  const std::string remedy = rivalRemedy(rows, assignment.other, assignment.collision);
  return streams(rowOf(rows, assignment.other)) ? remedy + "; --anyway assigns it nevertheless" : remedy;
}

}  // namespace

Assignment judgeAssignment(const ChannelRows &rows, int channel, int profile, const Collisions &collisions) {
  Assignment assignment = judgeBinding(rows, channel, profile);
  if (assignment.verdict != Verdict::free) return assignment;
  const ChannelRow &row = rowOf(rows, channel);
  if (!row.supported) {
    assignment.verdict = Verdict::unsupported;
  } else if (row.parked_behind) {
    assignment.verdict = Verdict::waits;
    assignment.other = *row.parked_behind;
  } else if (const int rival = streamingRival(rows, channel, collisions); rival != kNobody) {
    assignment.verdict = Verdict::stops_another;
    assignment.other = rival;
  }
  if (assignment.other != kNobody) assignment.collision = collisions[static_cast<std::size_t>(assignment.other)];
  return assignment;
}

bool isHarmless(const Assignment &assignment) {
  return assignment.verdict == Verdict::free || assignment.verdict == Verdict::bound;
}

bool isPossible(const Assignment &assignment) {
  switch (assignment.verdict) {
    case Verdict::away:
    case Verdict::port_kept:
    case Verdict::profile_taken:
    case Verdict::camera_taken:
      return false;
    default:
      return true;
  }
}

std::string refusalText(const Assignment &assignment, const ChannelRows &rows) {
  const std::string camera = named(rows, assignment.channel);
  const auto other = [&] { return named(rows, assignment.other); };
  const auto why = [&] {
    return " (" + collisionText(assignment.collision, rowOf(rows, assignment.channel).slot) + ")";
  };
  switch (assignment.verdict) {
    case Verdict::free:
    case Verdict::bound:
      return "";
    case Verdict::away:
      return camera + ": it is not attached";
    case Verdict::port_kept:
      return camera + ": a displaced camera keeps its port, and the library would take that one instead: " + other();
    case Verdict::profile_taken:
      return "profile " + std::to_string(assignment.profile) + " belongs to another camera: " + other();
    case Verdict::camera_taken:
      return camera + ": it has another profile";
    case Verdict::unsupported:
      return camera + ": it is not supported; the profile would be used up and show nothing";
    case Verdict::waits:
      return camera + ": it waits for " + other() + why() + "; with a profile, both would wait for each other";
    case Verdict::stops_another:
      return camera + ": it would stop " + other() + why();
  }
  return "";
}

std::string adviceText(const Assignment &assignment, const ChannelRows &rows) {
  switch (assignment.verdict) {
    case Verdict::free:
    case Verdict::bound:
      return "";
    case Verdict::away:
      return "attach the camera, or name another one";
    case Verdict::port_kept:
      return "'usbdevctl forget ch" + std::to_string(assignment.other) + "' frees the channel that keeps the port" +
             (rowOf(rows, assignment.other).profile ? ", its profile with it" : "");
    case Verdict::profile_taken:
      return "'usbdevctl move " + std::to_string(assignment.profile) + " ch" + std::to_string(assignment.channel) +
             "' moves the profile, and 'usbdevctl free' lists those that are free";
    case Verdict::camera_taken:
      return "'usbdevctl clear pf" + numberText(rowOf(rows, assignment.channel).profile) + "' takes that one away";
    case Verdict::unsupported:
      return "'usbdevctl explain ch" + std::to_string(assignment.channel) +
             "' shows why it is not; --anyway assigns it nevertheless";
    case Verdict::waits:
    case Verdict::stops_another:
      return rivalAdvice(assignment, rows);
  }
  return "";
}

std::string reasonWord(const Assignment &assignment) {
  static constexpr const char *kReasons[] = {
      "", "", "not_attached", "port_kept", "profile_taken", "camera_taken", "unsupported", "waits", "stops_another"};
  return kReasons[static_cast<int>(assignment.verdict)];
}

Fields assignmentMembers(const Assignment &assignment, const ChannelRows &rows) {
  const auto text = [](const std::string &value) { return value.empty() ? Json() : Json(value); };
  return Fields()
      .add(forPrograms("reason", text(reasonWord(assignment))))
      .add(forPrograms("other_channel", numberUnlessNone(assignment.other)))
      .add(forPrograms("collision", text(collisionWord(assignment.collision))))
      .add(forPrograms("why", text(refusalText(assignment, rows))))
      .add(forPrograms("advice", text(adviceText(assignment, rows))));
}

}  // namespace usbdevctl
