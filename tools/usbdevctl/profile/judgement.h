// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "camera/camera.h"
#include "camera/camera_argument.h"
#include "command_line/command.h"
#include "profile/assignment.h"

namespace usbdevctl {

/// The command line of the commands that are about giving a camera a profile.
struct AssignmentOptions {
  CameraArgument camera{CameraName::By::channel};
  int profile = 0;
  bool anyway = false;
  bool json = false;
};

/// Adds camera, profile and --json.
void addAssignmentOptions(Command &command, AssignmentOptions &options);

/// An assignment that was asked for, judged by what the library reports.
struct Judgement {
  Camera camera;
  ChannelRows rows;
  Assignment assignment;
};

/// Finds the camera and judges; prints on standard error what prevents that.
ExitStatus judge(const AssignmentOptions &options, Judgement &judgement);

/// Prints on standard error why the assignment is refused, and what to do.
void explainRefusal(const Judgement &judgement);

}  // namespace usbdevctl
