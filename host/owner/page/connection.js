// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The session of a user, and its live connection, which tells what the page knows.

import { call, keepToken, onWaiting, read } from "./api.js";
import { notice } from "./messages.js";
import { sayGoodbye, welcome } from "./plugging.js";
import { known, set } from "./store.js";
import { t } from "./texts.js";

const kMostEvents = 500;
const kRetryAtFirst = 500; // milliseconds, as the next three
const kRetryAtMost = 8000;
const kAnswerAtMost = 10000; // to the question whether the host is back
const kAnswerOfPressed = 3000; // to the question whether it lives, when it does not answer what was pressed
const kPatience = 2.5; // times as long as the host lets pass between two signs of life

let socket = null;
let patience = 10000; // until the host has said how often it gives a sign of life
let heard = null; // when it said something last
let silence = 0; // the timer that ends the patience
let pause = kRetryAtFirst;

const follow = {
  state: (state) => ({ ...state }),
  events: (news, state) => ({ ...state, events: [...news, ...state.events].slice(0, kMostEvents) }),
};

function take({ section, value }) {
  if (section === "host_away") return goneAway();
  if (section === "alive") return expectNext(1000 * kPatience * value);
  if (section === "channels" && known.state) {
    sayGoodbye(known.state.channels, value);
    welcome(known.state.channels, value);
  }
  const merge = follow[section] ?? ((part, state) => ({ ...state, [section]: part }));
  if (known.away) welcomeBack();
  if (section === "state" || known.state) set({ away: false, state: merge(value, known.state) });
}

const goneAway = () => known.away || set({ away: true, since: heard });

function welcomeBack() {
  known.timesBack += 1;
  notice(t("back"));
}

// A host that hangs, or is cut off, does not end the connection.
function expectNext(within = patience) {
  patience = within;
  clearTimeout(silence);
  silence = setTimeout(lose, patience);
}

function disconnect() {
  clearTimeout(silence);
  if (socket) socket.onmessage = socket.onclose = null;
  socket?.close();
}

function lose() {
  disconnect();
  comeBack();
}

function connect() {
  disconnect();
  socket = new WebSocket(`${location.protocol === "https:" ? "wss" : "ws"}://${location.host}/api/v1/live`);
  socket.onmessage = (message) => {
    pause = kRetryAtFirst;
    heard = Date.now();
    expectNext();
    take(JSON.parse(message.data));
  };
  socket.onclose = lose;
  expectNext();
}

// The connection does not tell whether the host is gone or the session has ended; a request does.
async function comeBack() {
  goneAway();
  setTimeout(async () => {
    pause = Math.min(2 * pause, kRetryAtMost);
    try {
      keepSession(await read("/session", kAnswerAtMost));
    } catch (problem) {
      if (problem.name === "signed_out") signedOut();
      else if (known.session) comeBack();
    }
  }, pause);
}

// What was pressed may take long, or the host hangs: then it does not answer the simplest question either, and says nothing.
onWaiting(async () => {
  if (known.away || !known.session) return;
  const before = heard;
  try {
    await read("/session", kAnswerOfPressed);
  } catch (problem) {
    if (problem.name === "host_away" && heard === before) lose();
  }
});

// Whether there may be a session; its cookie is not for scripts. Who has none is not asked for.
const kMayBeSignedIn = "signedIn";

function keepSession(session) {
  localStorage.setItem(kMayBeSignedIn, "1");
  keepToken(session.csrf);
  set({ session });
  connect();
}

export function signedOut(hasEnded = true) {
  localStorage.removeItem(kMayBeSignedIn);
  disconnect();
  set({ session: null, hasEnded, user: hasEnded ? known.session?.user : undefined, state: null, away: false, question: null });
}

export async function begin() {
  if (!localStorage.getItem(kMayBeSignedIn)) return signedOut(false);
  try {
    keepSession(await read("/session", kAnswerAtMost));
  } catch (problem) {
    if (problem.name === "signed_out") return signedOut();
    set({ away: true });
    setTimeout(begin, kRetryAtMost / 4);
  }
}

export async function signIn(user, password) {
  keepSession(await call("POST", "/session", { user, password }));
}

export async function signOut() {
  disconnect(); // the host would do it before it answers
  try {
    await call("DELETE", "/session");
  } catch (problem) {
    if (problem.name !== "signed_out") return comeBack();
  }
  signedOut(false);
}
