// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "stream/stream_settings.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "output/numbers.h"
#include "output/printable.h"
#include "stream/stream_text.h"

namespace usbdevctl {

namespace {

constexpr int kSoundOnly = 1;  // kinds of stream
constexpr int kPictureAndSound = 3;

const std::vector<std::string> kOffOn = {"off", "on"};

using Of = StreamSetting::Of;

const std::vector<StreamSetting> kSettings = {
    {"--codec", "Video codec", &_streaminfo::vcodec, Of::picture, videoCodecs()},
    {"--overlay", "Time of day in the picture, H.264 only", &_streaminfo::osdenable, Of::picture, kOffOn},
    {"--flip", "Picture upside down, H.264 only", &_streaminfo::flip, Of::picture, kOffOn},
    {"--mirror", "Picture mirrored, H.264 only", &_streaminfo::mirror, Of::picture, kOffOn},
    {"--display", "Picture on the host's own display, H.264 only", &_streaminfo::ldspoutput, Of::picture, kOffOn},
    {"--audio", "Sound", &_streaminfo::aenable, Of::sound, kOffOn},
    {"--audio-codec", "Audio codec, with sound only", &_streaminfo::acodec, Of::sound, audioCodecs()},
    {"--volume", "Volume, 0 to 100, with sound only", &_streaminfo::volume, Of::sound, {}},
};

struct Size {
  int width = 0;
  int height = 0;
};

/// Nothing may follow the numbers of a size.
bool readSize(const std::string &text, Size &size) {
  int end = 0;
  const bool numbers = std::sscanf(text.c_str(), "%5dx%5d%n", &size.width, &size.height, &end) == 2;
  return numbers && static_cast<std::size_t>(end) == text.size() && size.width > 0 && size.height > 0;
}

int numberFor(const StreamSetting &setting, const std::string &value) {
  if (setting.words.empty()) return std::stoi(value);
  return static_cast<int>(std::find(setting.words.begin(), setting.words.end(), value) - setting.words.begin());
}

Field settingField(const StreamSetting &setting, const _streaminfo &record) {
  const int number = record.*setting.field;
  if (setting.words.empty()) return numberField(memberName(setting), number);
  if (setting.words == kOffOn) return switchField(memberName(setting), number == 1);
  return wordField(memberName(setting), wordFor(setting.words, number));
}

void addSettings(Fields &fields, const _streaminfo &record, Of of) {
  for (const StreamSetting &setting : kSettings) {
    if (setting.of == of) fields.add(settingField(setting, record));
  }
}

bool hasSize(const _streaminfo &record, const std::string &text) {
  Size size;
  return readSize(text, size) && record.width == size.width && record.height == size.height;
}

}  // namespace

const std::vector<StreamSetting> &streamSettings() { return kSettings; }

std::string memberName(const StreamSetting &setting) {
  std::string name = setting.option + 2;
  std::replace(name.begin(), name.end(), '-', '_');
  return name;
}

std::string valueText(const StreamSetting &setting, int number) {
  return setting.words.empty() ? std::to_string(number) : wordFor(setting.words, number);
}

std::string checkSize(const std::string &text) {
  Size size;
  return readSize(text, size) ? "" : text + " is not a picture size such as 1280x720";
}

std::string checkRate(const std::string &text) {
  const bool decimal = text.find_first_not_of("0123456789.") == std::string::npos &&
                       text.find_first_of("0123456789") != std::string::npos &&
                       std::count(text.begin(), text.end(), '.') <= 1;
  const bool good = decimal && std::isfinite(std::strtof(text.c_str(), nullptr));
  return good ? "" : text + " is not a number of frames per second such as 30 or 7.5";
}

_streaminfo changed(const _streaminfo &record, const StreamChange &change) {
  _streaminfo result = record;
  for (std::size_t i = 0; i < kSettings.size(); ++i) {
    if (change.settings[i]) result.*kSettings[i].field = numberFor(kSettings[i], *change.settings[i]);
  }
  Size size;
  if (change.size && readSize(*change.size, size)) {
    result.width = size.width;
    result.height = size.height;
  }
  result.framerate = change.rate.value_or(record.framerate);
  return result;
}

std::vector<std::string> notStored(const _streaminfo &stored, const StreamChange &change) {
  std::vector<std::string> settings;
  for (std::size_t i = 0; i < kSettings.size(); ++i) {
    const auto &value = change.settings[i];
    if (value && stored.*kSettings[i].field != numberFor(kSettings[i], *value))
      settings.push_back(memberName(kSettings[i]));
  }
  if (change.size && !hasSize(stored, *change.size)) settings.emplace_back("size");
  return settings;
}

StreamChange allSettings(const _streaminfo &record) {
  const bool has_sound = record.stream_type == kSoundOnly || record.stream_type == kPictureAndSound;
  StreamChange change;
  for (std::size_t i = 0; i < kSettings.size(); ++i) {
    const StreamSetting &setting = kSettings[i];
    const bool switches = setting.field == &_streaminfo::vcodec || setting.field == &_streaminfo::aenable;
    const bool picture = setting.of == Of::picture && (switches || record.vcodec != kMjpeg);
    const bool sound = setting.of == Of::sound && has_sound && (switches || record.aenable == 1);
    if (picture || sound) change.settings[i] = valueText(setting, record.*setting.field);
  }
  change.size = sizeText(record.width, record.height);
  change.rate = record.framerate;
  return change;
}

Fields streamFields(const _streaminfo &record) {
  Fields fields;
  fields.add(streamField(record.stream_type))
      .add(numberField("video_node", numberUnlessNone(record.vnode)))
      .add(forPeople("size", {sizeText(record.width, record.height)}))
      .add(forPrograms("width", record.width))
      .add(forPrograms("height", record.height))
      .add({"fps", {rateText(record.framerate)}, Align::right, "fps", rateJson(record.framerate)});
  addSettings(fields, record, Of::picture);
  fields.add(textField("front_end", fieldText(record.fetype)))
      .add(switchField("video_enabled", record.venable != 0))
      .add(numberField("sps_state", record.spsstate))
      .add(textField("tag", fieldText(record.vtag)))
      .add(numberField("audio_node", numberUnlessNone(record.anode)));
  addSettings(fields, record, Of::sound);
  return fields.add(numberField("sample_rate", record.samplerate))
      .add(numberField("audio_channels", record.channelno))
      .add(numberField("bit_rate", record.bitrate));
}

}  // namespace usbdevctl
