// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The settings of a stream as one table, from which it is shown and changed.
#pragma once

#include <usbdev/records.h>

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "output/fields.h"

namespace usbdevctl {

/// A setting that the record keeps as a number: one of the words by its place, or, without words, the number itself.
struct StreamSetting {
  const char *option;
  const char *help;
  int _streaminfo::*field;
  enum class Of { picture, sound } of;
  std::vector<std::string> words;
};

const std::vector<StreamSetting> &streamSettings();

/// The setting's name for programs: "audio_codec".
std::string memberName(const StreamSetting &setting);

/// A setting's value as a user would give it.
std::string valueText(const StreamSetting &setting, int number);

/// What a user asks to be changed; what is not given stays.
struct StreamChange {
  StreamChange() : settings(streamSettings().size()) {}

  std::vector<std::optional<std::string>> settings;  // in the order of the table
  std::optional<std::string> size;                   // checked
  std::optional<float> rate;
};

/// What is wrong with a picture size; nothing with "1280x720".
std::string checkSize(const std::string &text);

/// What is wrong with a frame rate; nothing with "29.97".
std::string checkRate(const std::string &text);

/// The record with the change.
_streaminfo changed(const _streaminfo &record, const StreamChange &change);

/// The settings of the change that the stored record does not have, as "audio_codec": the library stores only what fits
/// the stream. The rate, which is the camera's to choose, is not among them.
std::vector<std::string> notStored(const _streaminfo &stored, const StreamChange &change);

/// All settings of the stream that can be set, as a change to them: the rest does not apply to it.
StreamChange allSettings(const _streaminfo &record);

Fields streamFields(const _streaminfo &record);

}  // namespace usbdevctl
