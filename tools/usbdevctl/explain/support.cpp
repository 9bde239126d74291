// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "explain/support.h"

#include <algorithm>

#include "output/printable.h"

namespace usbdevctl {

namespace {

bool lists(const FormatSurvey &survey, const char *code) {
  return std::find(survey.codes.begin(), survey.codes.end(), code) != survey.codes.end();
}

Reason noUsableFormat(const SupportFacts &facts) {
  const std::string formats = codesText(facts.survey);
  if (!lists(facts.survey, "YUYV")) return reasonFor(Cause::no_known_format, {{"formats", formats}});
  const std::optional<Reason> lack = encodingLack(facts.encoding);
  if (!lack) return reasonFor(Cause::none_accepted, {{"formats", formats}});
  return reasonFor(Cause::not_encoded, {{"formats", formats},
                                        {"lack", lack->why},
                                        {"lack_cause", lack->cause},
                                        {"package", kCodecPackage},
                                        {"cure", lack->remedy}});
}

Cause encodingCause(const EncodingFacts &facts) {
  if (facts.arm) return Cause::encoding_on_arm;
  if (!facts.package) return Cause::encoding_not_installed;
  if (!facts.enabled || *facts.enabled == "FALSE") return Cause::encoding_not_enabled;
  if (!facts.agent) return Cause::encoding_without_agent;
  return facts.driver ? Cause::encoding_unknown : Cause::encoding_without_driver;
}

}  // namespace

std::optional<Reason> encodingLack(const EncodingFacts &facts) {
  if (facts.permitted) return std::nullopt;
  return reasonFor(encodingCause(facts), {{"package", kCodecPackage}});
}

bool isUsable(const SupportFacts &facts) { return !facts.listed && facts.usable_formats > 0; }

Reason unsupportedReason(const SupportFacts &facts) {
  if (facts.listed) {
    return reasonFor(Cause::listed, {{"list", kUnsupportedList}, {"device", printable(facts.device)}});
  }
  if (facts.usable_formats > 0) return reasonFor(Cause::usable_now);
  if (const std::string wrong = layoutText(facts.survey); !wrong.empty()) {
    return reasonFor(Cause::other_layout, {{"layout", wrong}, {"cure", kLayoutAdvice}});
  }
  if (facts.survey.codes.empty()) return reasonFor(Cause::no_listing);
  return noUsableFormat(facts);
}

}  // namespace usbdevctl
