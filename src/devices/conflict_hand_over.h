// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What happens to the channels that wait for another one, when its device is removed or changes.
#pragma once

#include "devices/host_answers.h"

namespace usbdev {

/// What callers of updateConflict get in place of a profile when no channel takes over.
inline constexpr int kReportedForNone = 99;

/// What a hand-over does beside releasing the waiting channels.
enum class HandOverMode { release_only, hand_over, on_plug, and_park };

/// The mode that a caller's code means: 0, 1 and 4 are `hand_over` (a channel stops: a waiting one takes over),
/// `on_plug` (the same, without the special case of a one-channel host) and `and_park` (a one-channel host makes the
/// released channel wait too); any other code only releases.
HandOverMode handOverModeOf(int code);

/// Releases the channels that wait for a channel, which then wait for `parked_behind` (kNone: for none), and
/// chooses the one that takes over. False when the file cannot be opened or stored; successor_profile is set in any
/// case, to kNone without a successor.
bool handOverConflict(HostAnswers &host, int channel, int parked_behind, HandOverMode mode, int &successor_profile);

/// What follows when a channel's device was plugged in or removed: a removed one that did not wait itself hands over; a
/// new one that has to wait makes a one-channel host choose again. Returns the profile of the channel that took over,
/// kNone if there is none.
int followUpConflict(HostAnswers &host, int channel, bool came, int stored_conflict, int parked_behind);

}  // namespace usbdev
