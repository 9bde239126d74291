// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// A host on which nothing changes any more: whatever calls.h does to it was done before, so every call finds it, and
// leaves it, as it is, and gives the same answer as ever.
//
// Cameras in four ports serve the profiles 0, 1, 2 and none; the second has a sound card. No two conflict.
#pragma once

#include "hotplug/start_fixture.h"
#include "scripted_server.h"

namespace torture {

constexpr char kName[] = "HD Webcam";
constexpr char kShareId[] = "00004711";
constexpr char kToken[] = "token";
constexpr char kPassword[] = "secret";

/// The port and the node of a channel's camera.
std::string portOf(int channel);
int nodeOf(int channel);

class ASettledHost : public contract::AStart {
 protected:
  ASettledHost();
  void TearDown() override;

 private:
  void describeCameras();
  void describeTools();
  void describeShareLinks();

  contract::ScriptedServer services_;
};

}  // namespace torture
