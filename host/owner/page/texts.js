// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The texts of the page in the language of its user; one file for each language.

export const kLanguages = { en: "English", de: "Deutsch" };
const kInvisible = /[\p{Cc}\u061c\u200e\u200f\u202a-\u202e\u2066-\u2069]/gu;

let texts = {};
let language = "en";

export const currentLanguage = () => language;

function preferred() {
  const wishes = [localStorage.getItem("language"), ...navigator.languages.map((one) => one.slice(0, 2))];
  return wishes.find((one) => one in kLanguages) ?? "en";
}

export async function loadTexts(wish) {
  if (wish) localStorage.setItem("language", wish);
  language = preferred();
  texts = await (await fetch(`/page/texts/${language}.json`)).json();
  document.documentElement.lang = language;
}

export const hasText = (key) => key in texts;

export function t(key, values = {}) {
  return (texts[key] ?? key).replace(/\{(\w+)\}/g, (_, name) => values[name] ?? "");
}

// A name that somebody else gave, without what would turn or break the line that it is in.
export const plain = (name) => (name ?? "").replace(kInvisible, "");

export const number = (value) => new Intl.NumberFormat(language, { maximumFractionDigits: 3 }).format(value);

const kTime = { dateStyle: "medium", timeStyle: "medium" };
export const moment = (text) => new Intl.DateTimeFormat(language, kTime).format(new Date(text));
