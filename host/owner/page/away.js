// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// While the host does not answer, what would change something is not active, and nor is what cannot be done at the moment. It
// keeps its place and the keyboard, which what is disabled does not, and a screen reader says why.

import { html } from "../libraries/preact.js";
import { hostIsAway } from "./store.js";
import { recently, t } from "./texts.js";

const kInactive = '[aria-disabled="true"]';
const kMovesOn = ["Tab", "Escape"];

// The properties of what is not active; "why" is the id of the text that says why.
export const inactive = (why) => ({ "aria-disabled": "true", "aria-describedby": why });

// The properties of what needs the host.
export const needsHost = (away = "away") => hostIsAway() && inactive(away);

// Since when, as far as this page was told something before.
export const Away = ({ id = "away", since }) =>
  html`<p id=${id}>${t("away")}${since && ` ${t("away.since", { time: recently(since) })}`}</p>`;

function stop(event) {
  if (!event.target.closest(kInactive) || kMovesOn.includes(event.key)) return;
  event.preventDefault();
  event.stopPropagation();
}

// A form is submitted with a press of its button, also with the Enter key.
for (const kind of ["click", "keydown"]) document.addEventListener(kind, stop, { capture: true });
