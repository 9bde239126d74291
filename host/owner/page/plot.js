// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Amounts over time, as lines.

import { html, useLayoutEffect, useRef, useState } from "../libraries/preact.js";
import uPlot from "../libraries/uplot.js";
import { timeFormat } from "./timeline.js";
import { moment, percent, t } from "./texts.js";

const kHeight = 220; // pixels
const kColours = ["--accent", "--good", "--care", "--bad"];
const colourOf = (place) => kColours[place % kColours.length];

// A plot asks for it whenever it is drawn, because its user may have chosen light or dark since.
const colour = (name) => getComputedStyle(document.documentElement).getPropertyValue(name).trim();

function axes(from) {
  const common = { stroke: colour("--quiet"), grid: { stroke: colour("--hair"), width: 1 }, ticks: { stroke: colour("--hair"), width: 1 } };
  const format = timeFormat(from);
  const time = (_, splits) => splits.map((one) => format.format(one * 1000));
  return [{ ...common, values: time, space: 80 }, { ...common, incrs: [0.25], size: 56, values: (_, splits) => splits.map(percent) }];
}

// Parts of a whole, as steps; "lines" has the name of each. Below are the values at the pointer, or else the latest.
export function Plot({ title, data, lines, from, to }) {
  const frame = useRef(null);
  const [pointed, point] = useState(null); // the place of a step in the data
  const series = lines.map((label, place) => ({
    label,
    stroke: () => colour(colourOf(place)),
    fill: () => colour(colourOf(place)) + "33",
    width: 2,
    paths: uPlot.paths.stepped({ align: 1 }),
    points: { show: false },
  }));
  // Before the page is shown, because what is below is moved by it.
  useLayoutEffect(() => {
    const draw = () => new uPlot({
      width: frame.current.clientWidth,
      height: kHeight,
      cursor: { drag: { x: false, y: false } },
      legend: { show: false },
      hooks: { setCursor: [({ cursor }) => point(cursor.idx ?? null)] },
      scales: { x: { range: [from, to] }, y: { range: [0, 1] } },
      axes: axes(from),
      series: [{}, ...series],
    }, data, frame.current);
    let plot = draw();
    const again = () => {
      plot.destroy();
      plot = draw();
    };
    const scheme = matchMedia("(prefers-color-scheme: dark)");
    for (const kind of ["resize", "colours"]) addEventListener(kind, again);
    scheme.addEventListener("change", again);
    return () => {
      for (const kind of ["resize", "colours"]) removeEventListener(kind, again);
      scheme.removeEventListener("change", again);
      plot.destroy();
    };
  }, [data]);
  const [times, ...parts] = data;
  const time = pointed === null ? t("charts.now") : moment(times[pointed] * 1000);
  return html`<div ref=${frame} role="img" aria-label=${t("charts.described", { title })}></div>
    <ul class="legend quiet"><li>${t("charts.value", { name: t("time"), value: time })}</li>
      ${lines.map((name, place) => html`<li key=${name}><span class="line-colour" style=${{ background: `var(${colourOf(place)})` }}></span>
        ${t("charts.value", { name, value: percent(parts[place][pointed ?? parts[place].length - 1]) })}</li>`)}</ul>`;
}
