// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

import { LivePlayer } from "/share/live-player.js";
import { awaitTexts, changeLanguage, currentLanguage, hasText, kLanguages, plain, recently, t } from "/share/texts.js";

// Shows the stream of the page's address, or the sentence that explains why there is none. If the reason can change, the
// page asks until it has, even if the browser believes that it is offline, because the host may be in the same house.

const kAskAgain = 2000; // milliseconds, as all of these
const kAskAtMost = 10000;
const kLook = 500;
const kStandsStill = 3000;
const kBeginAnew = 8000;

const kMistakes = ["reason.password_wrong", "reason.too_many"];

const element = (id) => document.getElementById(id);
const [main, frame, video] = [document.querySelector("main"), element("frame"), element("video")];
const choice = element("language");
const colours = element("colours");
const link = new URLSearchParams(location.search);
let password = "";
let player = null;
let asking = false;
let timer = 0;
let shown = {}; // the sentence: the name of a text, or what the host says, for which there is none
let name = ""; // of the camera, once the host has told it
let seen = null; // when the playlist had changed at the last check
let position = 0; // of the picture, and since when
let since = 0;
let heard = null; // when the host has said or sent something last

function show(state, key = "", otherwise = "") {
  document.body.dataset.state = state;
  shown = { key, otherwise };
  showSentence();
  element("password-form").hidden = state !== "password";
  element("sentence").classList.toggle("problem", kMistakes.includes(key));
  element("password").ariaInvalid = String(key === "reason.password_wrong");
  element("countdown").hidden = state !== "paused";
  element("go-on").hidden = state !== "stopped";
  element("since").hidden = state !== "away" || heard === null;
}

const showReason = (state, { reason, sentence }) => show(state, `reason.${reason}`, sentence);

function showSentence() {
  const sentence = hasText(shown.key) ? t(shown.key) : shown.otherwise;
  if (element("sentence").textContent !== sentence) element("sentence").textContent = sentence;
  element("since").textContent = heard === null ? "" : t("away.since", { time: recently(heard) });
}

function showName() {
  const title = name || t("title");
  document.title = title;
  element("name").textContent = title;
  video.ariaLabel = t("live_view", { name: title });
}

// What does not change with the stream, but with the language.
function showTexts() {
  for (const one of document.querySelectorAll("[data-text]")) one.textContent = t(one.dataset.text);
  choice.value = currentLanguage();
  colours.title = t("colours");
  showName();
  showSentence();
  showControls();
}

function showControls() {
  element("sound").textContent = t(video.muted ? "live_view.sound_on" : "live_view.sound_off");
  element("sound").hidden = player?.hasSound === false;
  element("full").textContent = t(document.fullscreenElement ? "live_view.small" : "live_view.large");
}

const isShown = (...states) => states.includes(document.body.dataset.state);

async function ask() {
  const question = { ssid: link.get("ssid") ?? "", token: link.get("token") ?? "", password };
  const options = { method: "POST", cache: "no-store", signal: AbortSignal.timeout(kAskAtMost) };
  try {
    const answer = await fetch("/share/open", { ...options, body: JSON.stringify(question) });
    if (answer.ok || answer.status === 429) {
      heard = Date.now();
      return await answer.json();
    }
  } catch {} // the host is as good as gone
  return { outcome: "away" };
}

async function look() {
  if (asking) return;
  clearTimeout(timer);
  asking = true;
  const answer = await ask();
  asking = false;
  follow[answer.outcome](answer);
}

function lookLater() {
  clearTimeout(timer);
  timer = setTimeout(look, kAskAgain);
}

const follow = {
  plays(answer) {
    const grows = answer.changed !== seen;
    seen = answer.changed;
    name = plain(answer.name);
    showName();
    if (isPlaying()) return;
    const wasGiven = performance.now() - since;
    if (seen === null) {
      stop();
      show("waits", "not_begun");
    } else if (grows && (!player || player.hasEnded || wasGiven >= kBeginAnew)) {
      play(answer.playlist);
      return;
    } else if (!player || player.hasEnded || isShown("away")) {
      show("still", "still");
    }
    lookLater();
  },
  waits(answer) {
    stop();
    showReason("waits", answer);
    lookLater();
  },
  // What has arrived is still shown to its end.
  away() {
    if (isPlaying()) return;
    show("away", "away");
    lookLater();
  },
  password(answer) {
    stop();
    showReason("password", answer);
    element("password").select();
  },
  paused(answer) {
    if (player) {
      timer = setTimeout(look, 1000 * answer.seconds);
    } else {
      showReason("paused", answer);
      countDown(performance.now() + 1000 * answer.seconds);
    }
  },
  refused(answer) {
    stop();
    showReason("refused", answer);
  },
};

function countDown(end) {
  const seconds = Math.ceil((end - performance.now()) / 1000);
  element("countdown").textContent = t("countdown", { seconds });
  if (seconds > 0) timer = setTimeout(countDown, 250, end);
  else look();
}

const isPlaying = () => player !== null && !player.hasEnded && isShown("plays");

function stop() {
  player?.destroy();
  player = null;
  frame.hidden = true;
}

function play(playlist) {
  stop();
  if (!isShown("still")) show("loading", "loading");
  position = 0;
  since = performance.now();
  // The link may have been removed, or the camera unplugged.
  player = new LivePlayer(video, playlist, look, () => show("stopped", "stopped"));
}

function watch() {
  if (!player || player.hasEnded || isShown("stopped")) return;
  const now = performance.now();
  const moves = video.currentTime !== position;
  if (frame.hidden) {
    if (now - since < kBeginAnew) return;
    stop();
    look();
  } else if (moves || document.hidden) {
    if (moves) heard = Date.now();
    position = video.currentTime;
    since = now;
    show("plays");
  } else if (now - since >= kStandsStill && isPlaying()) {
    show("still", "still");
    look();
  }
}

video.addEventListener("loadeddata", () => {
  frame.hidden = false;
  since = performance.now();
  showControls();
  if (!isShown("stopped")) show("plays");
});

element("go-on").addEventListener("click", () => {
  since = performance.now();
  show(...(frame.hidden ? ["loading", "loading"] : ["plays"]));
  player.goOn();
});

element("sound").addEventListener("click", () => {
  video.muted = !video.muted;
  showControls();
});

// An iPhone enlarges nothing but the video alone.
element("full").addEventListener("click", () => {
  if (document.fullscreenElement) document.exitFullscreen();
  else if (main.requestFullscreen) main.requestFullscreen();
  else video.webkitEnterFullscreen();
});
document.addEventListener("fullscreenchange", showControls);

element("password-form").addEventListener("submit", (event) => {
  event.preventDefault();
  password = element("password").value;
  show("loading", "loading");
  look();
});

element("see").addEventListener("click", () => {
  const isSeen = element("password").type === "text";
  element("password").type = isSeen ? "password" : "text";
  element("see").ariaPressed = String(!isSeen);
});

choice.append(...Object.entries(kLanguages).map(([code, own]) => new Option(own, code)));
choice.addEventListener("change", async () => {
  await changeLanguage(choice.value);
  showTexts();
});

colours.value = window.colours.current();
colours.addEventListener("change", () => window.colours.choose(colours.value));

await awaitTexts();
showTexts();
if (LivePlayer.isSupported(video)) {
  setInterval(watch, kLook);
  look();
} else {
  show("refused", "cannot_play");
}
