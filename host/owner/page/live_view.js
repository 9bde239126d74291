// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The live picture of a profile.

import { html, useEffect, useRef, useState } from "/libraries/preact.js";
import { Busy } from "/page/parts.js";
import { t } from "/page/texts.js";

const kAgain = 2000; // milliseconds
// The player stays close to the newest picture, and runs a little faster when it has fallen back.
const kSettings = { liveSyncDurationCount: 2, maxLiveSyncPlaybackRate: 1.5 };

let loading = null;

function loadPlayer() {
  loading ??= new Promise((resolve, reject) => {
    const script = document.createElement("script");
    Object.assign(script, { src: "/libraries/hls.min.js", onload: () => resolve(window.Hls), onerror: reject });
    document.head.append(script);
  });
  return loading;
}

// Plays until it is told to stop; after a failure it begins again.
function playing(video, playlist, show) {
  let [player, timer, isOver] = [null, 0, false];
  const stop = () => {
    clearTimeout(timer);
    player?.destroy();
    player = null;
  };
  const again = () => {
    stop();
    show("waits");
    if (!isOver) timer = setTimeout(start, kAgain);
  };
  // The playlist comes into being with the stream; asking for it first keeps the browser's console quiet.
  const start = async () => {
    const [Hls, answer] = await Promise.all([loadPlayer(), fetch(playlist, { cache: "no-store" })]).catch(() => []);
    if (isOver) return;
    if (Hls && !Hls.isSupported()) return show("cannot");
    if (!answer?.ok) return again();
    player = new Hls(kSettings);
    player.on(Hls.Events.ERROR, (_, error) => error.fatal && again());
    player.loadSource(playlist);
    player.attachMedia(video);
  };
  start();
  return () => {
    isOver = true;
    stop();
  };
}

export function LiveView({ profile, name }) {
  const video = useRef(null);
  const [shows, setShows] = useState("waits");
  useEffect(() => playing(video.current, `/api/v1/profiles/${profile}/playlist.m3u8`, setShows), [profile]);
  return html`<div class="live" data-shows=${shows}>
    <video ref=${video} controls=${shows === "plays"} muted autoplay playsinline aria-label=${t("live_view.of", { name })}
      onPlaying=${() => setShows("plays")}></video>
    ${shows === "waits" && html`<div class="over"><${Busy} text=${t("live_view.waits")} /></div>`}
    ${shows === "cannot" && html`<div class="over"><p role="status">${t("live_view.cannot")}</p></div>`}
  </div>`;
}
