// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The texts of a page in the language of its user: one file for each language, in the folder "texts" beside this file.

export const kLanguages = { en: "English", de: "Deutsch" };
const kInvisible = /[\p{Cc}\u061c\u200e\u200f\u202a-\u202e\u2066-\u2069]/gu;

let texts = {};
let language = "en";

export const currentLanguage = () => language;

function preferred() {
  const wishes = [localStorage.getItem("language"), ...navigator.languages.map((one) => one.slice(0, 2))];
  return wishes.find((one) => one in kLanguages) ?? "en";
}

// Loads the texts in the language that is preferred. Returns whether the host has given them.
async function loadTexts() {
  const wish = preferred();
  try {
    texts = await (await fetch(new URL(`texts/${wish}.json`, import.meta.url))).json();
  } catch {
    return false;
  }
  language = wish;
  document.documentElement.lang = wish;
  return true;
}

// Also for the next visits.
export function changeLanguage(wish) {
  localStorage.setItem("language", wish);
  return loadTexts();
}

const kAgain = 2000; // milliseconds

// Loads them as soon as the host gives them.
export async function awaitTexts() {
  while (!(await loadTexts())) await new Promise((resolve) => setTimeout(resolve, kAgain));
}

export const hasText = (key) => key in texts;

export function t(key, values = {}) {
  return (texts[key] ?? key).replace(/\{(\w+)\}/g, (_, name) => values[name] ?? "");
}

// A name that somebody else gave, without what would turn or break the line that it is in.
export const plain = (name) => (name ?? "").replace(kInvisible, "");

export const number = (value) => new Intl.NumberFormat(language, { maximumFractionDigits: 3 }).format(value);
export const list = (texts) => new Intl.ListFormat(language).format(texts);
export const percent = (part) => new Intl.NumberFormat(language, { style: "percent" }).format(part);

const kTime = { dateStyle: "medium", timeStyle: "medium" };
export const moment = (text) => new Intl.DateTimeFormat(language, kTime).format(new Date(text));

// With the day only if that was another one.
export function recently(time) {
  const isToday = new Date(time).toDateString() === new Date().toDateString();
  return new Intl.DateTimeFormat(language, { ...kTime, dateStyle: isToday ? undefined : kTime.dateStyle }).format(new Date(time));
}
