// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What the page tells its user, and asks.

import { known, set } from "./store.js";

const kNoticeTime = 5000; // milliseconds
const kReadingTime = 70; // of a letter
const kDone = "done";

let noticed = 0;

export function closeNotice(id) {
  set({ notices: known.notices.filter((one) => one.id !== id) });
}

const withoutRefusals = () => known.notices.filter((one) => !one.isRefusal);

export const leaveNotices = () => set({ notices: [] });

export const leaveNews = () => set({ notices: known.notices.filter((one) => one.isRefusal) });

// On another page it would seem to be about that one.
export const leaveRefusals = () => set({ notices: withoutRefusals() });

// A refusal stays until it is closed or something else went well, which disappears. What went well, and what happened to a
// camera, is said in place of what was said of it before.
export function notice(text, cure = "", isRefusal = false, about = kDone) {
  const id = (noticed += 1);
  const earlier = (isRefusal ? known.notices : withoutRefusals()).filter((one) => one.isRefusal || one.about !== about);
  set({ notices: [...earlier.slice(-2), { id, text, cure, isRefusal, about, isNews: about !== kDone }] });
  if (!isRefusal) setTimeout(closeNotice, Math.max(kNoticeTime, kReadingTime * (text + cure).length), id);
}

// Asks before something is lost; the answer is whether to do it, or what was chosen.
export function ask(question) {
  return new Promise((resolve) => {
    const answer = (choice) => {
      set({ question: null });
      resolve(choice);
    };
    set({ question: { ...question, answer } });
  });
}
