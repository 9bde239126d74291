// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The settings of a stream, and their values, in words.

import { number, t } from "./texts.js";

// A rate below one a second is a time. The two digits of a rate that are stored make a long time no more exact than seconds.
export const isSlow = (rate) => rate > 0 && rate < 1;
export const secondsEach = (rate) => number(rate < 0.2 ? Math.round(1 / rate) : Math.round(10 / rate) / 10);
export const rateText = (rate) => (isSlow(rate) ? t("seconds_each", { seconds: secondsEach(rate) }) : t("per_second", { rate: number(rate) }));

export const kValueTexts = {
  codec: (codec) => t(`codec.${codec}`),
  size: (size) => size.replace("x", " × "),
  rate: rateText,
};

const kNames = { sound: "sound.on", sound_codec: "sound.codec", display: "picture.display" };
export const settingName = (name) => t(kNames[name] ?? name);

const kShortTexts = { ...kValueTexts, codec: (codec) => t(`words.${codec}`) };

// What a camera took instead of what was wanted; that it cannot do what nobody wanted is not worth a word.
export function differenceText({ setting, wanted, taken }) {
  if (taken === null) return wanted === "on" ? t("difference.none", { setting: settingName(setting) }) : "";
  const text = kShortTexts[setting];
  return t("difference", { setting: settingName(setting), wanted: text(wanted), taken: text(taken) });
}
