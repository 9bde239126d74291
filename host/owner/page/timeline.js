// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What happened to each camera and when: a line for each, with marks for moments and bars for what lasted.

import { html, useState } from "../libraries/preact.js";
import { currentLanguage, t } from "./texts.js";

const kDay = 86400; // seconds

// Hours, or for more than a day days.
export function timeFormat(from) {
  const isDay = Date.now() / 1000 - from < 2 * kDay;
  return new Intl.DateTimeFormat(currentLanguage(), isDay ? { timeStyle: "short" } : { month: "short", day: "numeric" });
}

const share = (part) => `${100 * Math.min(Math.max(part, 0), 1)}%`;

function Mark({ mark, from, to, point }) {
  const left = share((mark.from - from) / (to - from));
  const width = mark.to && share((mark.to - Math.max(mark.from, from)) / (to - from));
  return html`<span class=${`mark ${mark.kind}`} style=${{ left, width }} role="img" tabindex="0" aria-label=${mark.words}
    onMouseEnter=${() => point(mark.words)} onFocus=${() => point(mark.words)} onClick=${() => point(mark.words)}></span>`;
}

function Scale({ from, to }) {
  const format = timeFormat(from);
  return html`<div class="scale quiet" aria-hidden="true">
    ${[from, (from + to) / 2].map((time) => html`<span key=${time}>${format.format(time * 1000)}</span>`)}<span>${t("charts.now")}</span></div>`;
}

// The marks are of rows: { row, from, to (of what lasts), kind, words }. "kinds" has those for which there is a legend.
export function Timeline({ marks, kinds, from, to }) {
  const [pointed, point] = useState("");
  const rows = [...new Set(marks.map((one) => one.row))].sort();
  const legend = kinds.filter(([kind]) => marks.some((one) => one.kind === kind));
  return html`<div class="timeline">
    ${rows.map((row) => html`<div key=${row} class="row"><bdi class="row-name">${row}</bdi>
      <div class="track">${marks.filter((one) => one.row === row).map((one) => html`
        <${Mark} key=${`${one.kind} ${one.from}`} mark=${one} from=${from} to=${to} point=${point} />`)}</div></div>`)}
    <${Scale} from=${from} to=${to} />
  </div>
  ${legend.length > 0 && html`<ul class="legend quiet">${legend.map(([kind, words]) => html`<li key=${kind}><span class=${`mark ${kind}`}></span>${words}</li>`)}</ul>`}
  <p class="pointed" aria-hidden="true">${pointed || t("charts.point")}</p>`;
}
