// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "explain/support.h"

#include <algorithm>

#include "output/printable.h"

namespace usbdevctl {

namespace {

const std::string kPluggedAgain = "plug the camera in again";

bool lists(const FormatSurvey &survey, const char *code) {
  return std::find(survey.codes.begin(), survey.codes.end(), code) != survey.codes.end();
}

Reason because(std::string why, std::string remedy) { return {"unsupported", std::move(why), std::move(remedy)}; }

std::string withPackage(const char *what) { return std::string("the codec package ") + kCodecPackage + what; }

Reason noUsableFormat(const SupportFacts &facts) {
  const std::string found = "it lists " + codesText(facts.survey);
  if (!lists(facts.survey, "YUYV")) {
    return because(found + ", and the library uses MJPG and YUYV only", "use another camera");
  }
  const std::optional<Reason> lack = encodingLack(facts.encoding);
  if (!lack) return because(found + ", none of which the library accepted", kPluggedAgain);
  return because(found + " and no MJPG, and the host may not encode it: " + lack->why,
                 lack->remedy + ", then " + kPluggedAgain);
}

}  // namespace

std::optional<Reason> encodingLack(const EncodingFacts &facts) {
  const auto lack = [](std::string why, std::string remedy) {
    return Reason{"encoding", std::move(why), std::move(remedy)};
  };
  if (facts.permitted) return std::nullopt;
  if (facts.arm) return lack("ARM hosts never encode", "use a camera that offers MJPG");
  if (!facts.package) return lack(withPackage(" is not installed"), "install and enable " + withPackage(""));
  if (!facts.enabled || *facts.enabled == "FALSE") return lack(withPackage(" is not enabled"), "enable it");
  if (!facts.agent) return lack(withPackage(" has no camera_agent.sh"), "install it again");
  if (!facts.driver) return lack("the driver of the host's graphics is not installed", "install it");
  return lack("the host does not say why", "use a camera that offers MJPG");
}

bool isUsable(const SupportFacts &facts) { return !facts.listed && facts.usable_formats > 0; }

Reason unsupportedReason(const SupportFacts &facts) {
  if (facts.listed) {
    return because("its name is a line of " + std::string(kUnsupportedList) + ": " + printable(facts.device),
                   "take the line out, then " + kPluggedAgain);
  }
  if (facts.usable_formats > 0) {
    return because("it was found unsupported earlier; now it offers formats that can be used", kPluggedAgain);
  }
  if (const std::string wrong = layoutText(facts.survey); !wrong.empty()) {
    return because(wrong, std::string(kLayoutAdvice) + ", then " + kPluggedAgain);
  }
  if (facts.survey.codes.empty()) return because("v4l2-ctl lists no format for it", kPluggedAgain);
  return noUsableFormat(facts);
}

}  // namespace usbdevctl
