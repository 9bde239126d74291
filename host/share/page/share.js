// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

import { LivePlayer } from "/share/live-player.js";

// Shows the stream of the page's address, or the sentence that explains why there is none. If the reason can change, the
// page asks until it has, even if the browser believes that it is offline, because the host may be in the same house.

const kAskAgain = 2000; // milliseconds, as all of these
const kAskAtMost = 10000;
const kLook = 500;
const kStandsStill = 3000;
const kBeginAnew = 8000;

const kWaiting = "The stream has not begun yet; it will be shown as soon as it begins.";
const kStill = "The picture does not move; it will continue as soon as the camera sends a new one.";
const kAway = "The host does not answer; the page tries again.";
const kCannotPlay = "This browser cannot play live streams.";
const kInvisible = /[\p{Cc}\u061c\u200e\u200f\u202a-\u202e\u2066-\u2069]/gu;

const element = (id) => document.getElementById(id);
const video = element("video");
const link = new URLSearchParams(location.search);
let password = "";
let player = null;
let asking = false;
let timer = 0;
let seen = ""; // the playlist as it was at the last check
let position = 0; // of the picture, and since when
let since = 0;

function show(state, sentence) {
  document.body.dataset.state = state;
  if (element("sentence").textContent !== sentence) element("sentence").textContent = sentence;
  element("password-form").hidden = state !== "password";
  element("countdown").hidden = state !== "paused";
}

const isShown = (...states) => states.includes(document.body.dataset.state);

function showName(name) {
  const plain = name.replace(kInvisible, "");
  element("name").textContent = plain;
  document.title = plain;
}

function load(address, options) {
  return fetch(address, { cache: "no-store", signal: AbortSignal.timeout(kAskAtMost), ...options });
}

async function ask() {
  const question = { ssid: link.get("ssid") ?? "", token: link.get("token") ?? "", password };
  const answer = await load("/share/open", { method: "POST", body: JSON.stringify(question) });
  if (!answer.ok && answer.status !== 429) throw new Error(answer.statusText);
  return answer.json();
}

async function askAndRead() {
  try {
    const answer = await ask();
    if (answer.outcome !== "plays") return answer;
    const playlist = await load(answer.playlist);
    return { ...answer, text: playlist.ok ? await playlist.text() : "" };
  } catch {
    return { outcome: "away", sentence: kAway };
  }
}

async function look() {
  if (asking) return;
  clearTimeout(timer);
  asking = true;
  const answer = await askAndRead();
  asking = false;
  follow[answer.outcome](answer);
}

function lookLater() {
  clearTimeout(timer);
  timer = setTimeout(look, kAskAgain);
}

const follow = {
  plays(answer) {
    const grows = answer.text !== "" && answer.text !== seen;
    seen = answer.text;
    showName(answer.name);
    if (isPlaying()) return;
    const wasGiven = performance.now() - since;
    if (seen === "") {
      stop();
      show("waits", kWaiting);
    } else if (grows && (!player || player.hasEnded || wasGiven >= kBeginAnew)) {
      play(answer.playlist);
      return;
    } else if (!player || player.hasEnded || isShown("away")) {
      show("still", kStill);
    }
    lookLater();
  },
  waits(answer) {
    stop();
    show("waits", answer.sentence);
    lookLater();
  },
  // What has arrived is still shown to its end.
  away(answer) {
    if (isPlaying()) return;
    show("away", answer.sentence);
    lookLater();
  },
  password(answer) {
    stop();
    show("password", answer.sentence);
    element("password").select();
  },
  paused(answer) {
    if (player) {
      timer = setTimeout(look, 1000 * answer.seconds);
    } else {
      show("paused", answer.sentence);
      countDown(performance.now() + 1000 * answer.seconds);
    }
  },
  refused(answer) {
    stop();
    show("refused", answer.sentence);
  },
};

function countDown(end) {
  const seconds = Math.ceil((end - performance.now()) / 1000);
  element("countdown").textContent = `The next attempt is possible in ${seconds} s.`;
  if (seconds > 0) timer = setTimeout(countDown, 250, end);
  else look();
}

const isPlaying = () => player !== null && !player.hasEnded && isShown("plays");

function stop() {
  player?.destroy();
  player = null;
  video.hidden = true;
}

function play(playlist) {
  stop();
  if (!isShown("still")) show("loading", "");
  position = 0;
  since = performance.now();
  player = new LivePlayer(video, playlist, look); // the link may have been removed, or the camera unplugged
}

// Returns whether the picture moves, or has been stopped by the viewer.
const isWell = () => video.currentTime !== position || (video.paused && !video.ended) || document.hidden;

function watch() {
  if (!player || player.hasEnded) return;
  const now = performance.now();
  if (video.hidden) {
    if (now - since < kBeginAnew) return;
    stop();
    look();
  } else if (isWell()) {
    position = video.currentTime;
    since = now;
    show("plays", "");
  } else if (now - since >= kStandsStill && isPlaying()) {
    show("still", kStill);
    look();
  }
}

video.addEventListener("loadeddata", () => {
  video.hidden = false;
  since = performance.now();
  show("plays", "");
});

element("password-form").addEventListener("submit", (event) => {
  event.preventDefault();
  password = element("password").value;
  show("loading", "");
  look();
});

if (LivePlayer.isSupported(video)) {
  setInterval(watch, kLook);
  look();
} else {
  show("refused", kCannotPlay);
}
