// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The live picture of a profile.

import { html, useEffect, useRef, useState } from "../libraries/preact.js";
import { read } from "./api.js";
import { LivePlayer } from "./live-player.js";
import { Icon } from "./icons.js";
import { Busy, Button } from "./parts.js";
import { isSlow, secondsEach } from "./settings.js";
import { hostIsAway, timesBack } from "./store.js";
import { t } from "./texts.js";

const kAgain = 2000; // milliseconds, as all of these
const kStillWatched = 600000;

// Plays until it is told to stop; after the end of a stream it begins again. Returns what goes on, if the browser has refused
// to play, and what ends it.
function playing(video, playlist, show) {
  let [player, timer, isOver] = [null, 0, false];
  const again = () => {
    player?.destroy();
    player = null;
    show("waits");
    if (!isOver) timer = setTimeout(start, kAgain);
  };
  // The playlist comes into being with the stream; there is no content before.
  const start = async () => {
    const answer = await fetch(playlist, { cache: "no-store" }).catch(() => null);
    if (isOver) return;
    if (answer?.status !== 200) return again();
    player = new LivePlayer(video, playlist, again, () => show("refused"));
  };
  show(LivePlayer.isSupported(video) ? "waits" : "cannot");
  if (LivePlayer.isSupported(video)) start();
  const end = () => {
    isOver = true;
    clearTimeout(timer);
    player?.destroy();
  };
  return { goOn: () => player?.goOn(), end };
}

// A session ends if nothing is asked for long, but not that of somebody who watches.
function useSession() {
  useEffect(() => {
    const timer = setInterval(() => document.hidden || read("/session").catch(() => {}), kStillWatched);
    return () => clearInterval(timer);
  }, []);
}

const waitText = (rate) => (isSlow(rate) ? t("live_view.waits_slow", { seconds: secondsEach(rate) }) : t("live_view.waits"));

const kOver = {
  waits: (rate) => html`<${Busy} text=${waitText(rate)} />`,
  cannot: () => html`<p role="status">${t("live_view.cannot")}</p>`,
  away: () => html`<p>${t("live_view.away")}</p>`,
  refused: (rate, goOn) => html`<p role="status">${t("live_view.refused")}</p>${goOn && html`<${Button} act=${goOn}>${t("do.watch")}<//>`}`,
};

function useFullView() {
  const [isFull, setFull] = useState(Boolean(document.fullscreenElement));
  useEffect(() => {
    const look = () => setFull(Boolean(document.fullscreenElement));
    document.addEventListener("fullscreenchange", look);
    return () => document.removeEventListener("fullscreenchange", look);
  }, []);
  return isFull;
}

// It has no time to go back to, and is not stopped: it is what the camera sees now. So the full view has these controls, and
// not the browser's; only an iPhone enlarges nothing but the video alone.
function Controls({ frame, video, hasSound }) {
  const [isMuted, mute] = useState(video.current.muted);
  const isFull = useFullView();
  const turn = () => mute((video.current.muted = !isMuted));
  const enlarge = () => (frame.current.requestFullscreen ? frame.current.requestFullscreen() : video.current.webkitEnterFullscreen());
  return html`<div class="controls"><span class="now">${t("live_view.now")}</span>
    ${hasSound && html`<${Button} icon=${isMuted ? "silent" : "loud"} kind="on-picture" act=${turn}>${t(isMuted ? "live_view.sound_on" : "live_view.sound_off")}<//>`}
    <${Button} icon=${isFull ? "small" : "large"} kind="on-picture" act=${isFull ? () => document.exitFullscreen() : enlarge}>
      ${t(isFull ? "live_view.small" : "live_view.large")}<//></div>`;
}

// After the host was away the stream is asked for anew: a connection that was cut off may not have ended.
export function LiveView({ profile, name, rate, hasSound, hasControls, setSeen = () => {} }) {
  const [frame, video, stream] = [useRef(null), useRef(null), useRef(null)];
  const [plays, setPlays] = useState("waits");
  const shows = hostIsAway() ? "away" : plays;
  useEffect(() => {
    stream.current = playing(video.current, `/api/v1/profiles/${profile}/playlist.m3u8`, setPlays);
    return stream.current.end;
  }, [profile, timesBack()]);
  useEffect(() => setSeen(plays === "plays"), [plays]);
  useSession();
  return html`<div class="live" ref=${frame} data-shows=${shows}>
    <video ref=${video} muted autoplay playsinline aria-label=${t("live_view.of", { name })}
      onPlaying=${() => setPlays("plays")}></video>
    ${kOver[shows] && html`<div class="over">${kOver[shows](rate, hasControls && (() => stream.current.goOn()))}</div>`}
    ${hasControls && shows === "plays" && html`<${Controls} frame=${frame} video=${video} hasSound=${hasSound} />`}
  </div>`;
}
