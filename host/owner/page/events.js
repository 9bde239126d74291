// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The event log as it grows.

import { html, useEffect, useState } from "/libraries/preact.js";
import { explainReading } from "/page/actions.js";
import { read } from "/page/api.js";
import { channelOf, nameOf } from "/page/channels.js";
import { hostsWords } from "/page/hosts_words.js";
import { Icon } from "/page/icons.js";
import { Busy, Button, Choice, Empty } from "/page/parts.js";
import { moment, t } from "/page/texts.js";

const kPage = 50;
const kTyping = 250; // milliseconds without a key before the host is asked
const kSeverities = ["", "information", "warning"];

function question(filter, before) {
  const wishes = { limit: kPage, search: filter.search, severity: filter.severity, before };
  return `/events?${new URLSearchParams(Object.entries(wishes).filter(([, value]) => value))}`;
}

const load = (filter, before) =>
  read(question(filter, before)).catch((problem) => {
    explainReading(problem);
    return { events: [] };
  });

// The events that fit the filter; asked for again when the newest one changes.
function useEvents(filter, newest) {
  const [events, setEvents] = useState(null);
  const [isAll, setAll] = useState(false);
  useEffect(() => {
    let isLate = false;
    const timer = setTimeout(async () => {
      const { events: found } = await load(filter);
      if (isLate) return;
      setEvents(found);
      setAll(found.length < kPage);
    }, events === null ? 0 : kTyping);
    return () => {
      isLate = true;
      clearTimeout(timer);
    };
  }, [filter, newest]);
  const older = async () => {
    const { events: found } = await load(filter, events.at(-1).id);
    setEvents([...events, ...found]);
    setAll(found.length < kPage);
  };
  return { events, isAll, older };
}

// The log counts profiles from one and calls them channels.
const kProfile = /\bChannel ([1-4])\b/;

function cameraOf(event, state) {
  const [, count] = kProfile.exec(event.text) ?? [];
  const channel = count && channelOf(state, count - 1);
  return channel ? t("events.camera", { name: nameOf(channel), number: count - 1 }) : "";
}

const Event = ({ event, state }) => html`<li class=${`event ${event.severity}`} data-severity=${event.severity}>
  <${Icon} name=${event.severity === "information" ? "info" : "alert"} />
  <div><p><span class="unseen">${t(`severity.${event.severity}`)}: </span>${hostsWords(event.text)}</p>
    <p class="quiet"><time datetime=${event.time}>${moment(event.time)}</time> <bdi>${cameraOf(event, state)}</bdi></p></div>
</li>`;

function Filter({ filter, setFilter }) {
  const options = kSeverities.map((one) => ({ value: one, text: t(`severity.${one || "all"}`) }));
  return html`<search class="filter"><form onSubmit=${(event) => event.preventDefault()}>
    <div class="field"><label for="search">${t("events.search")}</label>
      <input id="search" type="search" value=${filter.search} maxlength="100" onInput=${(event) => setFilter({ ...filter, search: event.target.value })} /></div>
    <${Choice} id="severity" label=${t("events.severity")} value=${filter.severity} options=${options} change=${(severity) => setFilter({ ...filter, severity })} />
    <a class="button plain" href="/api/v1/events.csv" download>${t("events.export")}</a>
  </form></search>`;
}

function Found({ state, events, isAll, older, isFiltered }) {
  if (events.length === 0) return html`<${Empty} icon="events" title=${t(isFiltered ? "events.none_found" : "events.empty")} />`;
  return html`<ul class="card events">${events.map((one) => html`<${Event} key=${one.id} event=${one} state=${state} />`)}</ul>
    ${!isAll && html`<div class="buttons"><${Button} act=${older}>${t("events.older")}<//></div>`}`;
}

export function Events({ state }) {
  const [filter, setFilter] = useState({ search: "", severity: "" });
  const { events, isAll, older } = useEvents(filter, state.events[0]?.id);
  const isFiltered = Boolean(filter.search || filter.severity);
  return html`<p class="quiet">${t("events.explained")}</p>
    <${Filter} filter=${filter} setFilter=${setFilter} />
    ${isFiltered && events && html`<p class="unseen" role="status">${t("events.found", { count: events.length })}</p>`}
    ${events ? html`<${Found} state=${state} events=${events} isAll=${isAll} older=${older} isFiltered=${isFiltered} />` : html`<${Busy} text=${t("loading")} />`}`;
}
