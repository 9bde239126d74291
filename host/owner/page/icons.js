// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Small pictures for buttons and states; they are never the only name of a thing.

import { html } from "../libraries/preact.js";

export const kEmblem = new URL("favicon.svg", import.meta.url).pathname;

const kPaths = {
  overview: "M4 4h7v7H4zM13 4h7v7h-7zM4 13h7v7H4zM13 13h7v7h-7z",
  sharing: "M15 7a3 3 0 1 0 3-3 3 3 0 0 0-3 3zM3 12a3 3 0 1 0 3-3 3 3 0 0 0-3 3zM15 17a3 3 0 1 0 3-3 3 3 0 0 0-3 3zM8.7 10.7l6.6-2.4M8.7 13.3l6.6 2.4",
  events: "M8 6h12M8 12h12M8 18h12M4 6h.01M4 12h.01M4 18h.01",
  charts: "M4 4v16h16M8 15l4-5 3 3 5-7",
  host: "M12 3a9 9 0 1 0 0 18 9 9 0 0 0 0-18zM9.5 9.5a2.5 2.5 0 1 1 3.5 2.3c-.7.3-1 .9-1 1.7M12 17h.01",
  camera: "M4 7h11a1 1 0 0 1 1 1v8a1 1 0 0 1-1 1H4a1 1 0 0 1-1-1V8a1 1 0 0 1 1-1zM16 11l5-3v8l-5-3",
  off: "M12 3v9M7 6a8 8 0 1 0 10 0",
  plug: "M9 3v5M15 3v5M6 8h12v3a6 6 0 0 1-12 0zM12 17v4",
  unplug: "M9 3v5M15 3v5M6 8h12v3a6 6 0 0 1-12 0zM12 17v4M3 4l18 16",
  user: "M12 4a4 4 0 1 0 0 8 4 4 0 0 0 0-8zM4 20c1-4 4-5.5 8-5.5s7 1.5 8 5.5",
  wait: "M12 3a9 9 0 1 0 0 18 9 9 0 0 0 0-18zM12 7v5l3 2",
  alert: "M12 4 2.5 20h19zM12 10v4M12 17h.01",
  info: "M12 3a9 9 0 1 0 0 18 9 9 0 0 0 0-18zM12 11v5M12 8h.01",
  copy: "M9 9h11v11H9zM5 15H4V4h11v1",
  tick: "M4 12.5l5 5L20 6.5",
  large: "M4 9V4h5M15 4h5v5M20 15v5h-5M9 20H4v-5",
  small: "M9 4v5H4M15 4v5h5M20 15h-5v5M4 15h5v5",
  loud: "M4 9.5v5h3.5L12 18V6L7.5 9.5zM15.5 9a4 4 0 0 1 0 6M18 6.5a8 8 0 0 1 0 11",
  silent: "M4 9.5v5h3.5L12 18V6L7.5 9.5zM16 9.5l5 5M21 9.5l-5 5",
  seen: "M2.5 12C5 7.5 8.5 5.5 12 5.5s7 2 9.5 6.5c-2.5 4.5-6 6.5-9.5 6.5S5 16.5 2.5 12zM12 9a3 3 0 1 0 0 6 3 3 0 0 0 0-6z",
  lock: "M6 11h12v9H6zM8.5 11V8a3.5 3.5 0 0 1 7 0v3",
  close: "M6 6l12 12M18 6 6 18",
  open: "M13 5h6v6M19 5l-9 9M10 6H5v13h13v-5",
  play: "M8 5v14l11-7z",
  back: "M15 5l-7 7 7 7",
  edit: "M4 20h4L19 9l-4-4L4 16z",
  signOut: "M10 4H5v16h5M9 12h11M16 8l4 4-4 4",
};

export const Icon = ({ name }) => html`
  <svg class="icon" viewBox="0 0 24 24" width="24" height="24" aria-hidden="true" focusable="false">
    <path d=${kPaths[name]} />
  </svg>`;
