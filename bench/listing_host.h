// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

/// The host of the formats benchmark: every command gets a file to read, the format query of node 0 a long listing and
/// any other an empty one, so that no process is measured.
constexpr int kListingLines = 1000;
constexpr int kListingFormats = 3;
constexpr int kListingSizes = 30;  // of the formats that are complete
constexpr char kListingQuery[] = "/usr/bin/v4l2-ctl -d /dev/video0 --list-formats-ext";
