// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What a stream is described with, in one wording: its kind, codec, picture size and frame rate.
#pragma once

#include <string>
#include <vector>

#include "output/fields.h"

namespace usbdevctl {

constexpr int kMjpeg = 1;

// The codecs by their numbers.
const std::vector<std::string> &videoCodecs();
const std::vector<std::string> &audioCodecs();

/// The word at the number's place, or the number where it has none.
std::string wordFor(const std::vector<std::string> &words, int number);

/// The codecs that are stored as "0 1".
Field codecsField(const std::string &name, const std::vector<std::string> &codecs, const std::string &stored);

/// none, audio, video or both.
Field streamField(int stream_type);

/// 1280x720
std::string sizeText(int width, int height);

/// A rate in as few digits as it needs: 30, 7.5, 29.97.
std::string rateText(float rate);

/// The number as rateText writes it, 29.97 and not 29.969999313354492; null for what is not a number.
Json rateJson(float rate);

}  // namespace usbdevctl
