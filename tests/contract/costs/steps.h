// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What the steps cost that many operations are made of.
#pragma once

#include "costs.h"

namespace contract {

// A profile is looked up from channel 0 on, up to the channel that holds it.
constexpr Costs lookUp(int channel) { return reading(channel + 1); }

// An operation that compares the channels reads them whole, 13 values each.
inline constexpr Costs kAllChannels = reading(10 * 13);

// The settings of a slot: of every attached channel its port, and of the one in the slot 22 values.
constexpr Costs slotSettings(int attached) { return reading(10 + attached + 22); }

// The format enumeration without the codec package: the processor file, made and read; the package; the listing; a
// query that still runs.
inline constexpr Costs kPackageMissing = answers();
inline constexpr Costs kListing = effects() + files() + answers(2);
inline constexpr Costs kFormats = kPackageMissing + kListing;
// With an encoder: two fields of the package, the model and two questions about the GPU; the package's agent and the
// processor's description.
inline constexpr Costs kEncoder = answers(5) + files(2);

// The one-channel question: the processor file, made and read, and the host's model.
inline constexpr Costs kOneChannel = effects() + files(2);

// Not behind a bridge; behind one, whose path is asked for too.
inline constexpr Costs kNoBridge = answers();
inline constexpr Costs kBridge = answers(2);

// Vendor and product, and their entry in the table of camera types.
inline constexpr Costs kCameraType = answers() + files();

// Which channel a device that comes belongs to: all of them, and for the switch of its port two values of each again.
inline constexpr Costs kChoice = reading(10 * 13 + 10 * 2);
// What a camera is: whether it is supported, its formats and its type.
inline constexpr Costs kProbe = files() + kFormats + kCameraType;
// How many keys are written for a camera that is plugged in; for one that no channel knows, its settings too.
inline constexpr int kCameraKeys = 10;
inline constexpr int kNewCameraKeys = kCameraKeys + 14;
inline constexpr Costs kNewCamera = kChoice + kProbe + writing(kNewCameraKeys);

// What a profile's camera can do: its channel, and presence, switch, node and stored formats of that.
inline constexpr Costs kCapability = lookUp(0) + reading(4);

// A hand-over that finds no waiting channel.
inline constexpr Costs kNobodyWaits = kAllChannels + writing(0);

}  // namespace contract
