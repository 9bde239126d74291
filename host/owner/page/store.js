// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What the page knows. Everything that is shown is made of it.

import { withNamesakes } from "./channels.js";

const kGuessAfterAnswer = 1500; // milliseconds

// "session" is undefined until the host has answered, and null for somebody who is not signed in; "hasEnded" is whether the
// last one ended by itself, and "user" whose it was then. "since" is when a host that is away said something last, if it did.
// "timesBack" is how often the host has answered again after it was away, and "arrived" has the channels whose cameras were
// plugged in just now.
export const known = { session: undefined, hasEnded: false, state: null, away: false, since: null, timesBack: 0, notices: [], question: null, arrived: [] };
let guesses = [];
let painter = () => {};

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
