// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What has happened, as it happens: what users did, the event log, and the cameras that came, went and waited.

import { html, useEffect, useRef, useState } from "../libraries/preact.js";
import { attempt, explainReading } from "./actions.js";
import { read } from "./api.js";
import { needsHost } from "./away.js";
import { hostsWords } from "./hosts_words.js";
import { Icon } from "./icons.js";
import { Button, Choice, Empty, Failed, Loading, Switch } from "./parts.js";
import { saveFile } from "./save_file.js";
import { timesBack } from "./store.js";
import { currentLanguage, moment, plain, t } from "./texts.js";

const kPage = 50;
const kTyping = 250; // milliseconds without a key before the host is asked
const kSeverities = ["", "information", "warning"];
const kIcons = { log: "info", plugged: "plug", unplugged: "unplug", waits: "wait", waits_no_more: "wait", act: "user" };

function query(wishes) {
  return new URLSearchParams(Object.entries(wishes).filter(([, value]) => value)).toString();
}

// The host puts events into words, because it searches and exports them too.
const asked = (filter) => ({ ...filter, language: currentLanguage(), zone: Intl.DateTimeFormat().resolvedOptions().timeZone });

// Undefined if the host did not answer.
const load = (filter, more) =>
  read(`/events?${query({ limit: kPage, ...asked(filter), ...more })}`).then(({ events }) => events, explainReading);

const kTurns = ["plugged", "unplugged", "waits", "waits_no_more"];
const keyOf = ({ kind, id }) => `${kind} ${id}`;
const oldest = (events, kinds) => events.findLast(({ kind }) => kinds.includes(kind))?.id;
const known = (events) => ({ before: oldest(events, ["log"]), before_turn: oldest(events, kTurns), before_act: oldest(events, ["act"]) });

// The events that fit the filter, as useAnswer() gives them; asked for again when there are new ones, which are marked then.
function useEvents(filter, newest) {
  const [events, setEvents] = useState(null);
  const [isAll, setAll] = useState(false);
  const [fresh, setFresh] = useState([]);
  const [count, setCount] = useState(0);
  const seen = useRef({});
  useEffect(() => {
    let isLate = false;
    const timer = setTimeout(async () => {
      const found = await load(filter);
      if (isLate) return;
      if (!found) return setEvents((before) => before ?? undefined);
      const keys = found.map(keyOf);
      setFresh(seen.current.filter === filter ? keys.filter((one) => !seen.current.keys.includes(one)) : []);
      seen.current = { filter, keys };
      setEvents(found);
      setAll(found.length < kPage);
    }, events === null ? 0 : kTyping);
    return () => {
      isLate = true;
      clearTimeout(timer);
    };
  }, [filter, newest, currentLanguage(), count, timesBack()]);
  const older = async () => {
    const found = await load(filter, known(events));
    if (!found) return;
    setEvents([...events, ...found]);
    setAll(found.length < kPage);
  };
  return { events, fresh, isAll, older, again: () => setCount(count + 1) };
}

const textOf = ({ text, lines }) => (text === lines[0] ? hostsWords(text) : plain(text));

function Event({ event, isFresh, withLines }) {
  const { camera, kind, lines, severity, text, time, user } = event;
  return html`<li class=${`event ${severity}${isFresh ? " fresh" : ""}`} data-severity=${severity}>
    <${Icon} name=${severity === "information" ? kIcons[kind] : "alert"} />
    <div><p><span class="unseen">${t(`severity.${severity}`)}: </span>${textOf(event)}</p>
      ${withLines && lines.filter((line) => line !== text).map((line) => html`<p class="quiet line">${hostsWords(line)}</p>`)}
      <p class="quiet"><time datetime=${time}>${moment(time)}</time>${user && ` ${t("events.by", { user: plain(user) })}`}</p></div>
    ${camera && html`<p class="about"><span class="unseen">${t("camera")}: </span><bdi>${plain(camera.name)}</bdi> <span class="quiet port">${camera.port}</span></p>`}
  </li>`;
}

async function save(filter) {
  const table = await attempt(() => read(`/events.csv?${query(asked(filter))}`));
  if (table) saveFile(table, "text/csv", `events-${new Date().toISOString().slice(0, 10)}.csv`);
}

const kEverything = { search: "", severity: "" };

function Filter({ filter, setFilter, isFiltered, isEmpty }) {
  const options = kSeverities.map((one) => ({ value: one, text: t(`events.show.${one || "all"}`) }));
  return html`<search class="filter"><form onSubmit=${(event) => event.preventDefault()}>
    <div class="field search"><label for="search">${t("events.search")}</label>
      <input id="search" type="search" value=${filter.search} maxlength="100" placeholder=${t("events.search_hint")} onInput=${(event) => setFilter({ ...filter, search: event.target.value })} /></div>
    <${Choice} id="severity" label=${t("events.severity")} value=${filter.severity} options=${options} change=${(severity) => setFilter({ ...filter, severity })} />
    <${Button} act=${() => save(filter)} disabled=${isEmpty} aria-describedby=${isEmpty ? "nothing" : null} ...${needsHost()}>
      ${t(isFiltered ? "events.export_found" : "events.export")}<//>
  </form></search>`;
}

function Nothing({ isFiltered, clear }) {
  return html`<${Empty} icon="events" title=${t(isFiltered ? "events.none_found" : "events.empty")}>
    <p id="nothing">${t("events.nothing_to_export")}</p>
    ${isFiltered && html`<div class="buttons"><${Button} act=${clear}>${t("events.clear")}<//></div>`}
  <//>`;
}

function Found({ events, fresh, isAll, older, withLines }) {
  return html`<ul class="card events">
      ${events.map((one) => html`<${Event} key=${keyOf(one)} event=${one} isFresh=${fresh.includes(keyOf(one))} withLines=${withLines} />`)}</ul>
    ${!isAll && html`<div class="buttons"><${Button} act=${older} ...${needsHost()}>${t("events.older")}<//></div>`}`;
}

function countOf({ length }, isAll) {
  if (length === 0) return t("events.none_found");
  if (!isAll) return t("events.newest", { count: length });
  return length === 1 ? t("events.found_one") : t("events.found", { count: length });
}

export function Events({ state }) {
  const [filter, setFilter] = useState(kEverything);
  const [withLines, setLines] = useState(false);
  const { events, again, ...rest } = useEvents(filter, `${state.events[0]?.id} ${state.happened}`);
  const isFiltered = Boolean(filter.search || filter.severity);
  const clear = () => {
    setFilter(kEverything);
    document.getElementById("search").focus(); // the button disappears
  };
  return html`<p class="quiet">${t("events.explained")} <a href="#/charts">${t("events.charts")}</a></p>
    <${Filter} filter=${filter} setFilter=${setFilter} isFiltered=${isFiltered} isEmpty=${events?.length === 0} />
    <${Switch} label=${t("events.lines")} on=${withLines} change=${setLines} />
    ${withLines && html`<p class="quiet">${t("hosts_lines")}</p>`}
    <p class=${events?.length > 0 ? "quiet" : "unseen"} role="status">${events && countOf(events, rest.isAll)}</p>
    ${events === null && html`<${Loading} />`}
    ${events === undefined && html`<${Failed} again=${again} />`}
    ${events?.length === 0 && html`<${Nothing} isFiltered=${isFiltered} clear=${clear} />`}
    ${events?.length > 0 && html`<${Found} events=${events} withLines=${withLines} ...${rest} />`}`;
}
