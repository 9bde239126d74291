// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// How the last days went, as plots.

import { html, useLayoutEffect, useRef, useState } from "/libraries/preact.js";
import uPlot from "/libraries/uplot.js";
import { nameOf } from "/page/channels.js";
import { Busy, Choice, Empty, Failed, useAnswer } from "/page/parts.js";
import { currentLanguage, moment, number, percent, t } from "/page/texts.js";

const kDays = ["1", "7", "30"];
const kHeight = 220; // pixels
const kDay = 86400; // seconds
const kColours = ["--accent", "--good", "--care", "--bad"];

const seconds = (time) => Date.parse(time) / 1000;
// A plot asks for it whenever it is drawn, because the browser's user may have chosen light or dark since.
const colour = (name) => getComputedStyle(document.documentElement).getPropertyValue(name).trim();

// Days, or for a single one hours.
function timeFormat(from) {
  const isDay = Date.now() / 1000 - from < 2 * kDay;
  return new Intl.DateTimeFormat(currentLanguage(), isDay ? { hour: "numeric", minute: "2-digit" } : { month: "short", day: "numeric" });
}

function axes(values, from, incrs) {
  const common = { stroke: colour("--quiet"), grid: { stroke: colour("--hair"), width: 1 }, ticks: { stroke: colour("--hair"), width: 1 } };
  const format = timeFormat(from);
  const time = (_, splits) => splits.map((one) => format.format(one * 1000));
  return [{ ...common, values: time, space: 80 }, { ...common, incrs, size: 56, values: (_, splits) => splits.map(values) }];
}

function Plot({ id, title, data, series, from, range, values = number, incrs = [1, 2, 5, 10, 100, 1000], children }) {
  const frame = useRef(null);
  // Before the page is shown, because what is below is moved by it.
  useLayoutEffect(() => {
    const draw = () => new uPlot({
      width: frame.current.clientWidth,
      height: kHeight,
      legend: { live: false },
      cursor: { drag: { x: false, y: false } },
      scales: { x: { range: [from, Date.now() / 1000] }, y: { range } },
      axes: axes(values, from, incrs),
      series: [{ label: t("time") }, ...series],
    }, data, frame.current);
    let plot = draw();
    const again = () => {
      plot.destroy();
      plot = draw();
    };
    const scheme = matchMedia("(prefers-color-scheme: dark)");
    addEventListener("resize", again);
    scheme.addEventListener("change", again);
    return () => {
      removeEventListener("resize", again);
      scheme.removeEventListener("change", again);
      plot.destroy();
    };
  }, [data]);
  return html`<section class="card plot" aria-labelledby=${id}>
    <h2 id=${id}>${t(title)}</h2><p class="quiet">${t(`${title}.explained`)}</p>
    <div ref=${frame} role="img" aria-label=${t("charts.described", { title: t(title), count: data[0].length })}></div>${children}</section>`;
}

const point = (name, shade) => ({
  label: t(name),
  stroke: () => colour(shade),
  paths: () => null,
  points: { show: true, size: 9, fill: () => colour(shade) },
});

const sorted = (times) => [...new Set(times)].sort((one, other) => one - other);

const kMoments = 8;

const latest = (plugs) => [...plugs].sort((one, other) => (one.time < other.time ? 1 : -1)).slice(0, kMoments);

// The latest, in words; a channel that has another camera by now is called after that one.
function Moments({ plugs, state }) {
  const name = (channel) => channel.state !== "free" && html` · <bdi>${nameOf(channel)}</bdi>`;
  return html`<ul class="events">${latest(plugs).map((one) => html`<li class="event"><div>
    <p>${t("channel_number", { number: one.channel })}${name(state.channels[one.channel])}: ${t(`charts.${one.kind}`)}</p>
    <p class="quiet"><time datetime=${one.time}>${moment(one.time)}</time></p></div></li>`)}</ul>`;
}

function Plugs({ plugs, from, state }) {
  const times = sorted(plugs.map((one) => seconds(one.time)));
  const of = (kind) => times.map((time) => plugs.find((one) => seconds(one.time) === time && one.kind === kind)?.channel);
  const series = [point("charts.plugged", "--good"), point("charts.unplugged", "--bad")];
  return html`<${Plot} id="plugs" title="charts.plugs" data=${[times, of("plugged"), of("unplugged")]} series=${series}
    from=${from} range=${[-0.5, 9.5]}><${Moments} plugs=${plugs} state=${state} /><//>`;
}

// A bar for every profile, from when its stream began until it ended.
function UpTime({ up, from }) {
  const spans = up.map((one) => ({ ...one, from: seconds(one.from), to: one.to ? seconds(one.to) : Date.now() / 1000 }));
  const times = sorted(spans.flatMap((one) => [one.from, one.to, one.to + 1]));
  const profiles = [0, 1, 2, 3];
  const runs = (profile, time) => spans.some((one) => one.profile === profile && one.from <= time && time <= one.to);
  const bars = profiles.map((profile) => times.map((time) => (runs(profile, time) ? profile : null)));
  const series = profiles.map((one) => ({
    label: t("profile_number", { number: one }),
    stroke: () => colour(kColours[one]),
    width: 12,
    points: { show: false },
  }));
  return html`<${Plot} id="up" title="charts.up" data=${[times, ...bars]} series=${series} from=${from} range=${[-0.6, 3.6]} />`;
}

// Steps, each as long as the same part of a bus was reserved.
function Bandwidth({ bandwidth, from }) {
  const now = Date.now() / 1000;
  const spans = bandwidth.map((one) => ({ ...one, from: seconds(one.from), to: one.to ? seconds(one.to) : now }));
  const times = sorted([from, ...spans.flatMap((one) => [one.from, one.to]), now]);
  const buses = sorted(spans.map((one) => one.bus));
  const reserved = (bus, time) => {
    const span = spans.find((one) => one.bus === bus && one.from <= time && (time < one.to || one.to === now));
    return span ? span.reserved / span.speed : 0;
  };
  const series = buses.map((bus, place) => ({
    label: t("charts.bus", { bus, speed: number(spans.findLast((one) => one.bus === bus).speed) }),
    stroke: () => colour(kColours[place % kColours.length]),
    width: 2,
    paths: uPlot.paths.stepped({ align: 1 }),
    points: { show: false },
  }));
  return html`<${Plot} id="bandwidth" title="charts.bandwidth" data=${[times, ...buses.map((bus) => times.map((time) => reserved(bus, time)))]}
    series=${series} from=${from} range=${[0, 1]} incrs=${[0.25]} values=${percent} />`;
}

function TimeOuts({ timeouts, from }) {
  const times = sorted(timeouts.map((one) => seconds(one.time)));
  const profiles = [...new Set(timeouts.map((one) => one.profile))].sort();
  const count = (profile, time) => timeouts.find((one) => one.profile === profile && seconds(one.time) === time)?.count;
  const data = [times, ...profiles.map((profile) => times.map((time) => count(profile, time)))];
  const series = profiles.map((one) => ({ ...point("profile", kColours[one]), label: t("profile_number", { number: one }) }));
  return html`<${Plot} id="timeouts" title="charts.timeouts" data=${data} series=${series} from=${from} range=${(_, __, most) => [0, most + 1]} />`;
}

const kPlots = { plugs: Plugs, up: UpTime, bandwidth: Bandwidth, timeouts: TimeOuts };

function Plots({ charts, days, state }) {
  const from = Date.now() / 1000 - days * kDay;
  const filled = Object.entries(kPlots).filter(([name]) => charts[name]?.length > 0);
  if (filled.length === 0) return html`<${Empty} icon="charts" title=${t("charts.empty")}><p>${t("charts.empty_cure")}</p><//>`;
  return html`<div class="plots">
    ${filled.map(([name, Part]) => html`<${Part} key=${name} ...${{ [name]: charts[name] }} from=${from} state=${state} />`)}</div>`;
}

export function Charts({ state }) {
  const [days, setDays] = useState("7");
  const [charts, again] = useAnswer(`/charts?days=${days}`);
  const options = kDays.map((one) => ({ value: one, text: t(`charts.days.${one}`) }));
  return html`<div class="filter"><${Choice} id="days" label=${t("charts.days")} value=${days} options=${options} change=${setDays} /></div>
    ${charts === null && html`<${Busy} text=${t("loading")} />`}
    ${charts === undefined && html`<${Failed} again=${again} />`}
    ${charts && html`<${Plots} charts=${charts} days=${Number(days)} state=${state} />`}`;
}
