// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "report/report.h"

#include <algorithm>
#include <array>

#include "events/event_text.h"
#include "output/printable.h"
#include "output/reading.h"

namespace usbdevctl {

namespace {

constexpr std::array<const char *, 5> kSecretKeys = {"hlspath", "sharelink/shrpwd", "sharelink/ssid", "sharelink/token",
                                                     "sharelink/hash_string"};

Redaction secretsOf(const Report &report) {
  Redaction secrets;
  for (const StoredChannel &channel : report.configuration) {
    for (const auto &[key, value] : channel.keys) {
      if (isSecretKey(key)) secrets.add(value);
    }
  }
  for (const CameraAnswers &answers : report.cameras) addSerialNumbers(secrets, answers.walk);
  return secrets;
}

void redact(NamedTexts &texts, const Redaction &secrets) {
  for (auto &[name, text] : texts) text = secrets.apply(text);
}

void redact(ChannelRow &row, const Redaction &secrets) {
  for (std::string *text : {&row.slot, &row.device, &row.profile_name, &row.created}) *text = secrets.apply(*text);
}

template <std::size_t Size>
void redact(char (&field)[Size], const Redaction &secrets) {
  const std::string text = secrets.apply(fieldText(field));
  field[text.copy(field, Size - 1)] = '\0';
}

void redact(Profile &profile, const Redaction &secrets) {
  redact(profile.entry.profilename, secrets);
  redact(profile.entry.usbslot, secrets);
  redact(profile.entry.devname, secrets);
  redact(profile.entry.hlspath, secrets);
  profile.link.path = secrets.apply(profile.link.path);
  profile.link.target = secrets.apply(profile.link.target);
}

std::string heading(const std::string &title) { return "\n== " + title + "\n"; }

std::string namedLines(const NamedTexts &texts) {
  Fields fields;
  for (const auto &[name, text] : texts) fields.add(forPeople(name, {printable(text)}));
  return fields.text(false);
}

/// What a tool printed, line by line, each made printable.
std::string answerLines(const std::string &answer) {
  std::istringstream lines = readerOf(answer);
  std::string text;
  for (std::string line; std::getline(lines, line);) {
    std::replace(line.begin(), line.end(), '\t', ' ');
    text += "  " + printable(line) + "\n";
  }
  return text;
}

Json namedJson(const NamedTexts &texts) {
  Json object = Json::object();
  for (const auto &[name, text] : texts) object.set(name, text);
  return object;
}

Json eventsJson(const std::vector<Event> &events) {
  Json list = Json::array();
  for (const Event &event : events) list.append(addEvent(Json::object(), event));
  return list;
}

Json camerasJson(const std::vector<CameraAnswers> &cameras) {
  Json list = Json::array();
  for (const CameraAnswers &answers : cameras) {
    Fields members;
    addCameraMembers(members, answers.camera);
    list.append(members.addTo(Json::object()).set("v4l2_ctl", answers.formats).set("udevadm", answers.walk));
  }
  return list;
}

}  // namespace

bool isSecretKey(const std::string &key) {
  return std::find(kSecretKeys.begin(), kSecretKeys.end(), key) != kSecretKeys.end();
}

Report withoutSecrets(Report report) {
  const Redaction secrets = secretsOf(report);
  redact(report.host, secrets);
  for (ChannelRow &row : report.channels) redact(row, secrets);
  for (Profile &profile : report.profiles) redact(profile, secrets);
  for (Event &event : report.events) event.text = secrets.apply(event.text);
  for (CameraAnswers &answers : report.cameras) {
    redact(answers.camera.row, secrets);
    answers.formats = secrets.apply(answers.formats);
    answers.walk = secrets.apply(withoutSerialNumbers(answers.walk));
  }
  for (StoredChannel &channel : report.configuration) redact(channel.keys, secrets);
  return report;
}

std::string reportText(const Report &report) {
  std::string text = "== host\n" + namedLines(report.host);
  text += heading("channels") + tableText(channelFields(report.channels), false);
  text += heading("profiles") + tableText(profileFields(report.profiles), false);
  text += heading("events");
  for (const Event &event : report.events) text += eventText(event, false);
  for (const CameraAnswers &answers : report.cameras) {
    text += heading(cameraText(answers.camera));
    text += "v4l2-ctl --list-formats-ext\n" + answerLines(answers.formats);
    text += "udevadm info --attribute-walk\n" + answerLines(answers.walk);
  }
  for (const StoredChannel &channel : report.configuration) {
    text += heading("stored for channel " + std::to_string(channel.channel)) + namedLines(channel.keys);
  }
  return text;
}

Json reportJson(const Report &report) {
  Json configuration = Json::object();
  for (const StoredChannel &channel : report.configuration) {
    configuration.set("ch" + std::to_string(channel.channel), namedJson(channel.keys));
  }
  return Json::document()
      .set("host", namedJson(report.host))
      .set("channels", listJson(channelFields(report.channels)))
      .set("profiles", listJson(profileFields(report.profiles)))
      .set("events", eventsJson(report.events))
      .set("cameras", camerasJson(report.cameras))
      .set("configuration", std::move(configuration));
}

}  // namespace usbdevctl
