"use strict";

// Shows the stream that the page's address names, or the sentence that says why there is none.

const kRetryMilliseconds = 2000;
const kWaiting = "The stream is not there yet; it is shown as soon as it is.";
const kUnreachable = "The host does not answer; the page tries again.";
const kCannotPlay = "This browser cannot play live streams.";

const element = (id) => document.getElementById(id);
const link = new URLSearchParams(location.search);
let password = "";

function say(sentence) {
  element("sentence").textContent = sentence;
}

async function ask() {
  const question = { ssid: link.get("ssid") ?? "", token: link.get("token") ?? "", password };
  const answer = await fetch("/share/open", { method: "POST", body: JSON.stringify(question) });
  if (!answer.ok) throw new Error(answer.statusText);
  return answer.json();
}

function stop(player) {
  player.destroy();
  element("video").hidden = true;
  say(kWaiting);
}

// What goes wrong may pass, unless the link has meanwhile been taken back or the camera been pulled.
async function lookAgain(player) {
  const answer = await ask();
  if (answer.outcome === "plays") return;
  stop(player);
  follow(answer, 0);
}

// Plays until the stream can no longer be had; then the link is asked about again, which tells the reason.
function play(playlist) {
  const video = element("video");
  const player = new Hls();
  player.on(Hls.Events.ERROR, (_, error) => {
    if (error.fatal) {
      stop(player);
      show(kRetryMilliseconds);
    } else {
      lookAgain(player).catch(() => {}); // a host that is gone makes the next error a fatal one
    }
  });
  player.on(Hls.Events.MANIFEST_PARSED, () => {
    say("");
    video.hidden = false;
    video.play().catch(() => {}); // a browser that plays nothing by itself shows its controls
  });
  player.loadSource(playlist);
  player.attachMedia(video);
}

function follow(answer, delay) {
  element("password-form").hidden = answer.outcome !== "password";
  if (answer.outcome !== "plays") {
    say(answer.sentence);
    return;
  }
  element("name").textContent = answer.name;
  setTimeout(play, delay, answer.playlist);
}

// A stream that has just failed is taken up again after a delay; what else there is to say, at once.
async function show(delay = 0) {
  try {
    follow(await ask(), delay);
  } catch {
    say(kUnreachable);
    setTimeout(show, kRetryMilliseconds, delay);
  }
}

element("password-form").addEventListener("submit", (event) => {
  event.preventDefault();
  password = element("password").value;
  show();
});

if (window.Hls?.isSupported()) {
  show();
} else {
  say(kCannotPlay);
}
