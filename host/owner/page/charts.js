// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// How the last hours or days went: as a picture, and as a table.

import { html, useState } from "../libraries/preact.js";
import { Choice, Empty, Failed, Loading, useAnswer } from "./parts.js";
import { Plot } from "./plot.js";
import { moment, number, percent, plain, t } from "./texts.js";
import { Timeline } from "./timeline.js";

const kSpans = { hour: 3600, day: 86400, week: 7 * 86400, month: 30 * 86400 }; // seconds
const kMost = 200; // marks of a chart, and lines of its table

let chosen = null; // the span, as long as the page is open

const seconds = (time) => Date.parse(time) / 1000;
const times = (one) => [one.time, one.from, one.to].filter(Boolean).map(seconds);
const isSince = (from) => (one) => (one.to === null ? true : Math.max(...times(one)) >= from);

// "Now" for what goes on.
const endOf = (one) => (one.to === null ? t("charts.now") : moment(one.to));

// What the rows are called: of cameras with the same name the ports differ. Who had a profile may not be known.
function rowNames(charts) {
  const ports = new Map(); // by name
  for (const { camera } of Object.values(charts).flat()) {
    if (camera) ports.set(camera.name, (ports.get(camera.name) ?? new Set()).add(camera.port));
  }
  return ({ camera, profile }) => {
    if (!camera) return t("profile_number", { number: profile });
    const name = plain(camera.name);
    return ports.get(camera.name).size > 1 ? t("name_in_port", { name, port: camera.port }) : name;
  };
}

// Of each chart: its lines, whose "cells" are for the table.
const kLines = {
  plugs: (one, { rowOf }) => {
    const row = rowOf(one);
    return { row, kind: one.kind, from: seconds(one.time), cells: [moment(one.time), row, t(`charts.${one.kind}`)] };
  },
  up: (one, { rowOf, now }) => {
    const row = rowOf(one);
    const kind = one.to === null ? "running" : "ran";
    return { row, kind, from: seconds(one.from), to: one.to === null ? now : seconds(one.to), cells: [moment(one.from), endOf(one), row] };
  },
  bandwidth: (one) => ({
    cells: [moment(one.from), endOf(one), t("charts.bus", one), percent(one.reserved / one.speed)],
  }),
  timeouts: (one, { rowOf }) => {
    const row = rowOf(one);
    return { row, kind: "missed", from: seconds(one.time), cells: [moment(one.time), row, t("charts.times", { count: number(one.count) })] };
  },
};

const kHeads = {
  plugs: ["time", "camera", "charts.what"],
  up: ["charts.begin", "charts.end", "camera"],
  bandwidth: ["charts.begin", "charts.end", "charts.line", "charts.reserved"],
  timeouts: ["time", "camera", "charts.what"],
};

const kMoments = ["time", "charts.begin", "charts.end"];

// On a phone it is laid out as a list, which takes these roles away unless they are named.
function Table({ name, lines }) {
  return html`<details class="as-table"><summary>${t("charts.as_table")}</summary>
    <div class="scrolls" tabindex="0" role="region" aria-label=${t("charts.as_table")}><table role="table">
      <thead role="rowgroup"><tr role="row">${kHeads[name].map((one) => html`<th key=${one} role="columnheader" scope="col">${t(one)}</th>`)}</tr></thead>
      <tbody role="rowgroup">${lines.toReversed().map(({ cells }) => html`<tr role="row">${cells.map((one, column) => html`
        <td role="cell" class=${kMoments.includes(kHeads[name][column]) ? "moment" : ""}><bdi>${one}</bdi></td>`)}</tr>`)}</tbody>
    </table></div></details>`;
}

const kinds = () => ["plugged", "unplugged", "running", "ran"].map((kind) => [kind, t(`charts.${kind}`)]);

// Steps, each as long as the same part of a line was reserved.
function Bandwidth({ bandwidth, from, to }) {
  const spans = bandwidth.map((one) => ({ ...one, from: seconds(one.from), to: one.to ? seconds(one.to) : to }));
  const sorted = (values) => [...new Set(values)].sort((one, other) => one - other);
  const steps = sorted([from, ...spans.flatMap((one) => [one.from, one.to]), to]);
  const buses = sorted(spans.map((one) => one.bus));
  const reserved = (bus, time) => {
    const span = spans.find((one) => one.bus === bus && one.from <= time && (time < one.to || one.to === to));
    return span ? span.reserved / span.speed : 0;
  };
  return html`<${Plot} title=${t("charts.bandwidth")} data=${[steps, ...buses.map((bus) => steps.map((time) => reserved(bus, time)))]}
    lines=${buses.map((bus) => t("charts.bus", { bus }))} from=${from} to=${to} />`;
}

function Chart({ name, found, rowOf, from, to }) {
  const lines = found.slice(-kMost).map((one) => kLines[name](one, { rowOf, now: to }));
  const marks = lines.map((one) => ({ ...one, words: one.cells.join(", ") }));
  return html`<section class="card plot" aria-labelledby=${name}>
    <h2 id=${name}>${t(`charts.${name}`)}</h2><p class="quiet">${t(`charts.${name}.explained`)}</p>
    ${name === "bandwidth" ? html`<${Bandwidth} bandwidth=${found} from=${from} to=${to} />` : html`<${Timeline} marks=${marks} kinds=${kinds()} from=${from} to=${to} />`}
    ${found.length > kMost && html`<p class="quiet">${t("charts.newest", { count: kMost })}</p>`}
    <${Table} name=${name} lines=${lines} />
  </section>`;
}

function Plots({ charts, span, to }) {
  const from = to - kSpans[span];
  const filled = Object.keys(kLines).map((name) => [name, charts[name].filter(isSince(from))]).filter(([, found]) => found.length > 0);
  if (filled.length === 0) return html`<${Empty} icon="charts" title=${t("charts.empty")}><p>${t("charts.empty_cure")}</p><//>`;
  const rowOf = rowNames(charts);
  return html`<div class="plots">
    ${filled.map(([name, found]) => html`<${Chart} key=${`${name} ${span}`} name=${name} found=${found} rowOf=${rowOf} from=${from} to=${to} />`)}</div>`;
}

// The shortest span that has all that is known.
function fitting(charts, now) {
  const oldest = Math.min(now, ...Object.values(charts).flat().flatMap(times));
  return Object.keys(kSpans).find((one) => oldest >= now - kSpans[one]) ?? "month";
}

function Filled({ charts }) {
  const [now] = useState(Date.now() / 1000);
  const [span, setSpan] = useState(chosen ?? fitting(charts, now));
  const options = Object.keys(kSpans).map((one) => ({ value: one, text: t(`charts.span.${one}`) }));
  const change = (one) => {
    chosen = one;
    setSpan(one);
  };
  return html`<div class="filter"><${Choice} id="span" label=${t("charts.span")} value=${span} options=${options} change=${change} /></div>
    <${Plots} charts=${charts} span=${span} to=${now} />`;
}

export function Charts() {
  const [charts, again] = useAnswer("/charts?days=30");
  return html`<p class="lead">${t("charts.explained")}</p>
    ${charts === null && html`<${Loading} />`}
    ${charts === undefined && html`<${Failed} again=${again} />`}
    ${charts && html`<${Filled} charts=${charts} />`}`;
}
