// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The changes that an import or a move is made of, in the order in which they are applied.
#pragma once

#include <string>
#include <vector>

#include "camera/camera.h"
#include "command_line/refusal.h"
#include "explain/collision.h"
#include "format/formats.h"
#include "settings/settings.h"
#include "settings/stream_fit.h"

namespace usbdevctl {

struct Step {
  enum class Kind { clear, forget, bind, rename, stream, share, port_on, port_off };

  Kind kind;
  Camera camera;
  ProfileSettings settings;  // of the profile that it is about
};

/// assign profile 1: channel 2  3-1  "Cam"  no profile
std::string stepText(const Step &step);

/// All that is to be done, or why nothing is.
struct Plan {
  std::vector<Step> steps;
  Refusals refusals;
  std::vector<StreamDifference> differences;  // of the stream on its new camera
};

/// What the planning asks of a camera.
struct CameraFacts {
  Camera camera;
  Collisions collisions = {};
  CameraFormats formats;
  std::optional<ProfileSettings> current;  // of its profile
};

/// Brings the cameras to the settings: what the settings do not name stays. It is all or nothing: an attached camera
/// that is missing, a profile that another camera has, an assignment that would do harm, or a stream that the camera
/// does not offer, refuses the whole. Facts are those of the attached cameras.
Plan planImport(const Settings &settings, ChannelRows rows, const std::vector<CameraFacts> &facts);

/// Moves a profile from the source to the target, whose stream may differ.
Plan planMove(const ProfileSettings &settings, const Camera &source, const CameraFacts &target, ChannelRows rows);

/// Puts a moved profile back after the first steps of its plan were done; the plan refuses where the source is away.
Plan planReturn(const ProfileSettings &settings, const Camera &source, const std::vector<Step> &done);

}  // namespace usbdevctl
