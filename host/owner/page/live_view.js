// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The live picture of a profile.

import { html, useEffect, useRef, useState } from "/libraries/preact.js";
import { LivePlayer } from "/page/live-player.js";
import { Busy } from "/page/parts.js";
import { t } from "/page/texts.js";

const kAgain = 2000; // milliseconds

// Plays until it is told to stop; after the end of a stream it begins again.
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
    player = new LivePlayer(video, playlist, again);
  };
  if (LivePlayer.isSupported(video)) start();
  else show("cannot");
  return () => {
    isOver = true;
    clearTimeout(timer);
    player?.destroy();
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
