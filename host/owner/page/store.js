// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What the page knows, and the live connection that tells it. Everything that is shown is made of it.

import { call, keepToken, onWaiting, read } from "./api.js";
import { isMeantToStream, nameOf, withNamesakes } from "./channels.js";
import { t } from "./texts.js";

const kRetryAtFirst = 500; // milliseconds, as all of these
const kRetryAtMost = 8000;
const kAnswerAtMost = 10000; // to the question whether the host is back
const kGuessAfterAnswer = 1500;
const kMostEvents = 500;
const kNewTime = 5000;
const kPatience = 2.5; // times as long as the host lets pass between two signs of life
const kAnswerOfPressed = 3000; // to the question whether it lives, when it does not answer what was pressed

// "session" is undefined until the host has answered, and null for somebody who is not signed in; "hasEnded" is whether the
// last one ended by itself, and "user" whose it was then. "since" is when a host that is away said something last, if it did. "timesBack" is how often the host has answered again after it was away, and "arrived" has the
// channels whose cameras were plugged in just now.
const known = { session: undefined, hasEnded: false, state: null, away: false, since: null, timesBack: 0, notices: [], question: null, arrived: [] };
let guesses = [];
let painter = () => {};
let socket = null;
let patience = 10000; // until the host has said how often it gives a sign of life
let heard = null; // when it said something last
let silence = 0; // the timer that ends the patience
let pause = kRetryAtFirst;

export function onChange(paint) {
  painter = paint;
}

export function set(values) {
  Object.assign(known, values);
  painter();
}

export const hostIsAway = () => known.away;
export const timesBack = () => known.timesBack;

// Nobody knows how the cameras of a host are doing that does not answer.
const asUnknown = (state) => ({ ...state, channels: state.channels.map((one) => ({ ...one, isUnknown: true })) });

// The host's state as it will be when the changes that are on their way have been made.
export function view() {
  const state = known.state && withNamesakes(guesses.reduce((one, guess) => guess.expected(one), known.state));
  return { ...known, state: state && known.away ? asUnknown(state) : state };
}

function drop(guess) {
  guesses = guesses.filter((one) => one !== guess);
  painter();
}

// Shows what is expected at once, and takes it back if the host refuses.
export async function change(expected, request) {
  const guess = { expected };
  guesses.push(guess);
  painter();
  try {
    const answer = await request();
    setTimeout(drop, kGuessAfterAnswer, guess);
    return answer;
  } catch (problem) {
    drop(guess);
    throw problem;
  }
}

export function withChannel(number, values) {
  return (state) => ({
    ...state,
    channels: state.channels.map((one) => (one.channel === number ? { ...one, ...values } : one)),
  });
}

const follow = {
  state: (state) => ({ ...state }),
  events: (news, state) => ({ ...state, events: [...news, ...state.events].slice(0, kMostEvents) }),
};

const isPlugged = (channel) => channel.state === "plugged";

// A camera that was unplugged while somebody looks is announced. What one streams goes on with it.
function sayGoodbye(before, channels) {
  for (const one of withNamesakes({ channels: before }).channels.filter((one) => isPlugged(one) && !isPlugged(channels[one.channel]))) {
    notice(t(isMeantToStream(one) ? "gone.streamed" : "gone", { name: nameOf(one) }), "", false, one.channel);
  }
}

// A camera that is plugged in while somebody looks is announced and marked.
function welcome(before, channels) {
  const arrived = channels.filter((one) => isPlugged(one) && !isPlugged(before[one.channel])).map((one) => one.channel);
  if (arrived.length === 0) return;
  const named = withNamesakes({ channels }).channels;
  for (const number of arrived) {
    notice(t(channels[number].supported ? "arrived" : "arrived.unusable", { name: nameOf(named[number]) }), "", false, number);
  }
  set({ arrived: [...known.arrived, ...arrived] });
  setTimeout(() => set({ arrived: known.arrived.filter((one) => !arrived.includes(one)) }), kNewTime);
}

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

let noticed = 0;
const kNoticeTime = 5000; // milliseconds
const kReadingTime = 70; // of a letter

export function closeNotice(id) {
  set({ notices: known.notices.filter((one) => one.id !== id) });
}

const withoutRefusals = () => known.notices.filter((one) => !one.isRefusal);

export const leaveNotices = () => set({ notices: [] });

export const leaveNews = () => set({ notices: known.notices.filter((one) => one.isRefusal) });

// On another page it would seem to be about that one.
export const leaveRefusals = () => set({ notices: withoutRefusals() });

const kDone = "done";

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
