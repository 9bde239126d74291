// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "settings/settings.h"

#include <usbdev/records.h>

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <nlohmann/json.hpp>
#include <set>
#include <stdexcept>

#include "output/json.h"
#include "output/printable.h"
#include "stream/stream_text.h"

namespace usbdevctl {

namespace {

using nlohmann::json;

constexpr std::size_t kNameLimit = sizeof(_usbdev_entry::profilename) - 1;
constexpr std::size_t kPasswordLimit = sizeof(ShareLinkInfo::shrpwd) - 1;
constexpr std::size_t kSlotLimit = sizeof(_usbdev_des::usbslot) - 1;
constexpr int kLargestNumber = 100;

Json streamJson(const StreamChange &stream) {
  Json object = Json::object().set("size", stream.size).set("fps", stream.rate ? rateJson(*stream.rate) : Json());
  for (std::size_t i = 0; i < stream.settings.size(); ++i) {
    if (stream.settings[i]) object.set(memberName(streamSettings()[i]), *stream.settings[i]);
  }
  return object;
}

Json profileJson(const ProfileSettings &profile) {
  const ShareSettings &share = profile.share;
  return Json::object()
      .set("profile", profile.profile)
      .set("name", profile.name)
      .set("stream", streamJson(profile.stream))
      .set("share", Json::object().set("enabled", share.enabled).set("password", share.password));
}

/// What is wrong with the text, and where.
struct Wrong : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// An object of the text that has just the members that are asked for.
class Object {
 public:
  Object(const json &value, std::string path) : value_(value), path_(std::move(path)) {
    if (!value_.is_object()) throw Wrong(path_ + " is not an object");
  }

  std::string pathOf(const std::string &name) const { return path_ + "." + name; }

  bool has(const std::string &name) const { return value_.contains(name); }

  const json &at(const std::string &name) {
    asked_.insert(name);
    if (!has(name)) throw Wrong(pathOf(name) + " is missing");
    return value_.at(name);
  }

  std::string text(const std::string &name, std::size_t longest) {
    const json &value = at(name);
    if (!value.is_string()) throw Wrong(pathOf(name) + " is not a text");
    std::string text = value.get<std::string>();
    if (text.size() > longest) throw Wrong(pathOf(name) + " is longer than " + std::to_string(longest) + " bytes");
    if (text.find('\0') != std::string::npos) throw Wrong(pathOf(name) + " has a zero byte");
    return text;
  }

  bool answer(const std::string &name) {
    const json &value = at(name);
    if (!value.is_boolean()) throw Wrong(pathOf(name) + " is neither true nor false");
    return value.get<bool>();
  }

  int number(const std::string &name, int most) {
    const json &value = at(name);
    const bool good = value.is_number_unsigned() && value.get<std::uint64_t>() <= static_cast<unsigned>(most);
    if (!good) throw Wrong(pathOf(name) + " must be 0 to " + std::to_string(most));
    return value.get<int>();
  }

  void refuseOthers() const {
    for (const auto &item : value_.items()) {
      if (asked_.count(item.key()) == 0) throw Wrong(pathOf(printable(item.key())) + " is not known");
    }
  }

 private:
  const json &value_;
  std::string path_;
  std::set<std::string> asked_;
};

std::string readValue(Object &object, const StreamSetting &setting) {
  const std::string name = memberName(setting);
  std::string value = object.text(name, kNameLimit);
  if (!setting.words.empty()) {
    const bool known = std::find(setting.words.begin(), setting.words.end(), value) != setting.words.end();
    if (!known) throw Wrong(object.pathOf(name) + " cannot be '" + printable(value) + "'");
    return value;
  }
  const bool digits = !value.empty() && value.size() <= 3 && value.find_first_not_of("0123456789") == std::string::npos;
  if (digits && std::stoi(value) <= kLargestNumber) return value;
  throw Wrong(object.pathOf(name) + " must be 0 to " + std::to_string(kLargestNumber));
}

StreamChange readStreamChange(Object object) {
  StreamChange stream;
  stream.size = object.text("size", kNameLimit);
  if (const std::string wrong = checkSize(*stream.size); !wrong.empty()) throw Wrong(object.pathOf("size: ") + wrong);
  const json &rate = object.at("fps");
  if (!rate.is_number() || !(rate.get<float>() > 0) || !std::isfinite(rate.get<float>())) {
    throw Wrong(object.pathOf("fps") + " is not a rate");
  }
  stream.rate = rate.get<float>();
  for (std::size_t i = 0; i < stream.settings.size(); ++i) {
    const StreamSetting &setting = streamSettings()[i];
    const bool required = setting.field == &_streaminfo::vcodec;
    if (required || object.has(memberName(setting))) stream.settings[i] = readValue(object, setting);
  }
  object.refuseOthers();
  return stream;
}

ShareSettings readShare(Object object) {
  ShareSettings share;
  share.enabled = object.answer("enabled");
  share.password = object.text("password", kPasswordLimit);
  object.refuseOthers();
  return share;
}

ProfileSettings readProfile(Object object) {
  ProfileSettings profile;
  profile.profile = object.number("profile", USBDEV_PROFILES - 1);
  profile.name = object.text("name", kNameLimit);
  profile.stream = readStreamChange({object.at("stream"), object.pathOf("stream")});
  profile.share = readShare({object.at("share"), object.pathOf("share")});
  object.refuseOthers();
  return profile;
}

CameraSettings readCamera(Object object) {
  CameraSettings camera;
  camera.port = object.text("slot", kSlotLimit);
  camera.device = object.text("device", kNameLimit);
  camera.port_on = object.answer("slot_switch");
  const json &profile = object.at("profile");
  if (!profile.is_null()) camera.profile = readProfile({profile, object.pathOf("profile")});
  object.refuseOthers();
  return camera;
}

void refuseTwice(const Settings &settings) {
  std::set<std::string> ports;
  std::set<int> profiles;
  for (const CameraSettings &camera : settings) {
    if (!ports.insert(camera.port).second) throw Wrong("port " + printable(camera.port) + " is named twice");
    if (camera.profile && !profiles.insert(camera.profile->profile).second) {
      throw Wrong("profile " + std::to_string(camera.profile->profile) + " is named twice");
    }
  }
}

Settings readDocument(const json &value) {
  Object document(value, "settings");
  if (document.number("schema", kLargestNumber) != kJsonSchema) {
    throw Wrong("settings.schema is not " + std::to_string(kJsonSchema));
  }
  const json &cameras = document.at("cameras");
  if (!cameras.is_array()) throw Wrong("settings.cameras is not a list");
  Settings settings;
  for (const json &camera : cameras) {
    settings.push_back(readCamera({camera, "cameras[" + std::to_string(settings.size()) + "]"}));
  }
  document.refuseOthers();
  refuseTwice(settings);
  return settings;
}

}  // namespace

bool operator==(const ShareSettings &one, const ShareSettings &other) {
  return one.enabled == other.enabled && one.password == other.password;
}

bool operator==(const StreamChange &one, const StreamChange &other) {
  const bool same_rate = one.rate && other.rate ? sameRate(*one.rate, *other.rate) : one.rate == other.rate;
  return one.settings == other.settings && one.size == other.size && same_rate;
}

bool sameRate(float one, float other) {
  return std::lround(static_cast<double>(one) * 100) == std::lround(static_cast<double>(other) * 100);
}

std::string settingsText(const Settings &settings) {
  Json cameras = Json::array();
  for (const CameraSettings &camera : settings) {
    cameras.append(Json::object()
                       .set("slot", camera.port)
                       .set("device", camera.device)
                       .set("slot_switch", camera.port_on)
                       .set("profile", camera.profile ? profileJson(*camera.profile) : Json()));
  }
  return Json::document().set("cameras", std::move(cameras)).text();
}

std::optional<Settings> readSettings(const std::string &text, std::string &wrong) {
  try {
    const json value = json::parse(text);
    return readDocument(value);
  } catch (const Wrong &found) {
    wrong = found.what();
  } catch (const json::exception &) {
    wrong = "it is not JSON";
  }
  return std::nullopt;
}

}  // namespace usbdevctl
