// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// A form that offers only what the camera can do, and then shows what was asked for and what was taken.

import { html, useEffect, useRef, useState } from "../libraries/preact.js";
import { setStream } from "./actions.js";
import { needsHost } from "./away.js";
import { nameOf } from "./channels.js";
import { Icon } from "./icons.js";
import { notice } from "./messages.js";
import { Busy, Button, Choice, Fact, Failed } from "./parts.js";
import { isSlow, kValueTexts, secondsEach, settingName } from "./settings.js";
import { hostIsAway } from "./store.js";
import { t } from "./texts.js";

const sizeKey = ({ width, height }) => `${width}x${height}`;

// Of the rates in the camera's order the host takes the first that is not above the wish; some can never be had.
const canBeHad = (rate, _, rates) => rates.find((one) => one <= rate) === rate;
const descending = (one, other) => other - one;
const pixels = ({ width, height }) => width * height;

// In the same order for every camera: MJPEG first, large sizes and high rates first.
const inOrder = ({ codecs }) =>
  codecs
    .map(({ codec, sizes }) => ({
      codec,
      sizes: sizes
        .map((size) => ({ ...size, rates: [...new Set(size.rates)].filter(canBeHad).sort(descending) }))
        .sort((one, other) => pixels(other) - pixels(one)),
    }))
    .sort((one, other) => (one.codec < other.codec ? 1 : -1));

// The wish, as near to what the camera offers as it can be.
function offered(codecs, wish) {
  const codec = codecs.find((one) => one.codec === wish.codec) ?? codecs[0];
  const size = codec.sizes.find((one) => sizeKey(one) === wish.size) ?? codec.sizes[0];
  const far = (rate) => Math.abs(rate - Number(wish.rate));
  const rate = [...size.rates].sort((one, other) => far(one) - far(other))[0];
  return { codec, size, rate };
}

// The host stores two digits of a rate, and a camera can have more.
const isSameRate = (one, other) => Math.abs(one - other) < 0.01;
const isSame = (one, other) => one.codec === other.codec && one.size === other.size && isSameRate(one.rate, other.rate);

// What is set need not be in the camera's lists: a new stream has the same settings with every camera.
function isOffered(codecs, wish) {
  const { codec, size, rate } = offered(codecs, wish);
  return isSame({ codec: codec.codec, size: sizeKey(size), rate }, wish);
}

// The settings that are wished, with another format, or undefined if the camera does not offer it.
export function inCodec(formats, wish, name) {
  const codecs = inOrder(formats).filter((one) => one.codec === name);
  if (codecs.length === 0) return undefined;
  const { size, rate } = offered(codecs, wish);
  return { codec: name, width: size.width, height: size.height, rate };
}

const asOf = (channel) => ({ codec: channel.codec, size: sizeKey(channel), rate: String(channel.rate) });

// Whoever closes the page, or goes to another address, is asked by the browser whether to lose something.
function useLastQuestion(isAsked) {
  useEffect(() => {
    if (!isAsked) return undefined;
    const ask = (event) => {
      event.preventDefault();
      event.returnValue = true; // for older browsers
    };
    addEventListener("beforeunload", ask);
    return () => removeEventListener("beforeunload", ask);
  }, [isAsked]);
}

// What is chosen in the lists: at first, and when it changes, what is stored. Whoever leaves the camera before it was sent to
// the host is told that it was not saved.
export function useWish(channel) {
  const stored = asOf(channel);
  const [wish, setWish] = useState(stored);
  const [sent, setSent] = useState(null);
  const lost = useRef("");
  useEffect(() => setWish(stored), Object.values(stored));
  const isUnsaved = wish !== sent && !isSame(wish, stored);
  useLastQuestion(isUnsaved);
  lost.current = isUnsaved && t("stream.lost", { name: nameOf(channel) });
  useEffect(() => () => lost.current && setTimeout(notice, 0, lost.current), []); // when the page is drawn
  return { wish, setWish, isUnsaved, setSent };
}

const isTaken = ({ asked, taken }, stored) => isSame(asOf({ ...asked, ...taken }), stored);

function Taken({ outcome }) {
  const { asked, taken, not_stored: notStored = [] } = outcome;
  const rate = isSameRate(asked.rate, taken.rate) ? asked.rate : taken.rate;
  const [before, after] = [asked, { ...asked, ...taken, rate }].map((one) => ({ ...one, size: sizeKey(one) }));
  const rows = Object.entries(kValueTexts).map(([name, text]) => ({ name, asked: text(before[name]), taken: text(after[name]) }));
  const isAll = rows.every((one) => one.asked === one.taken);
  return html`<div class=${isAll ? "taken all" : "taken"} role="status">
    <p>${isAll && html`<${Icon} name="tick" />`}${isAll ? t("taken.all", { settings: rows.map((one) => one.taken).join(", ") }) : t("taken.other")}</p>
    ${!isAll && html`<table><thead><tr><td></td><th scope="col">${t("asked")}</th><th scope="col">${t("taken")}</th></tr></thead>
      <tbody>${rows.map((one) => html`<tr key=${one.name} class=${one.asked === one.taken ? "" : "differs"}>
        <th scope="row">${t(one.name)}</th><td>${one.asked}</td><td>${one.taken}</td></tr>`)}</tbody></table>`}
    ${notStored.length > 0 && html`<p>${t("not_stored", { names: notStored.map(settingName).join(", ") })}</p>`}
  </div>`;
}

function Choices({ codecs, wish, setWish, disabled }) {
  const { codec, size, rate } = offered(codecs, wish);
  const options = {
    codec: codecs.map((one) => ({ value: one.codec, text: kValueTexts.codec(one.codec) })),
    size: codec.sizes.map((one) => ({ value: sizeKey(one), text: kValueTexts.size(sizeKey(one)) })),
    rate: size.rates.map((one) => ({ value: String(one), text: kValueTexts.rate(one) })),
  };
  const values = { codec: codec.codec, size: sizeKey(size), rate: String(rate) };
  const isFact = (name) => options[name].length === 1 && !disabled;
  return Object.keys(options).map((name) => isFact(name)
    ? html`<${Fact} key=${name} label=${t(name)}>${options[name][0].text}<//>`
    : html`<${Choice} key=${name} id=${`stream-${name}`} label=${t(name)} value=${values[name]}
        options=${options[name]} disabled=${disabled} ...${needsHost()} change=${(value) => setWish({ ...values, [name]: value })} />`);
}

// What there is to know about the lists; that there is but one rate needs a reason.
function explanation(codecs, wish) {
  const { codec, size, rate } = offered(codecs, wish);
  if (isSlow(rate)) return t("stream.slow", { seconds: secondsEach(rate) });
  if (size.rates.length > 1) return t("stream.explained");
  const allowsMore = (one) => pixels(one) < pixels(size) && one.rates[0] > size.rates[0];
  return t(codec.sizes.some(allowsMore) ? "stream.one_rate_smaller" : "stream.one_rate");
}

function NotOffered({ stored }) {
  const settings = Object.entries(kValueTexts).map(([name, text]) => text(stored[name])).join(", ");
  return html`<p class="care-box">${t("stream.not_offered", { settings, button: t("store") })}</p>`;
}

// Until the camera has answered, what is set is in the place of what can be.
const asSet = ({ codec, width, height, rate }) => ({ codecs: [{ codec, sizes: [{ width, height, rates: [rate] }] }] });

const Asking = () => html`<${Busy} text=${t("formats.asking")} />`;

function Form({ channel, formats, wish, setWish, isUnsaved, setSent }) {
  const codecs = inOrder(formats ?? asSet(channel));
  const stored = asOf(channel);
  const [outcome, setOutcome] = useState(null);
  const [isAsking, setAsking] = useState(false);
  useEffect(() => outcome && !isTaken(outcome, stored) && setOutcome(null), Object.values(stored)); // changed since, elsewhere
  const submit = async (event) => {
    event.preventDefault();
    const { codec, size, rate } = offered(codecs, wish);
    setAsking(true);
    setSent(wish);
    setOutcome(null);
    const answer = await setStream(channel, { codec: codec.codec, width: size.width, height: size.height, rate });
    setAsking(false);
    if (answer) setOutcome(answer);
    else setWish(stored);
  };
  const choose = (value) => {
    setOutcome(null);
    setWish(value);
  };
  return html`<form class="stream-form" onSubmit=${submit}>
    ${!isOffered(codecs, stored) && html`<${NotOffered} stored=${stored} />`}
    <div class="fields"><${Choices} codecs=${codecs} wish=${wish} setWish=${choose} disabled=${!formats} /></div>
    <p class="quiet about-lists">${formats && explanation(codecs, wish)}</p>
    ${formats ? html`<button class=${isUnsaved ? "" : "plain"} disabled=${isAsking} ...${needsHost()}>${t(isAsking && !hostIsAway() ? "storing" : "store")}</button>
      <span class="unsaved" role="status">${isUnsaved && t("stream.unsaved")}</span>` : html`<${Asking} />`}
    ${outcome && html`<${Taken} outcome=${outcome} />`}
  </form>`;
}

export function StreamForm({ channel, formats, again, ...wish }) {
  const isEmpty = formats?.codecs.length === 0;
  const hasChoices = formats ? !isEmpty : formats === null && channel.width > 0;
  return html`<section class="card" aria-labelledby="stream">
    <h2 id="stream">${t("stream")}</h2>
    ${formats === null && !hasChoices && html`<${Asking} />`}
    ${formats === undefined && html`<${Failed} again=${again} />`}
    ${isEmpty && html`<p>${t("formats.none")}</p><${Button} act=${again} ...${needsHost()}>${t("again")}<//>`}
    ${hasChoices && html`<${Form} channel=${channel} formats=${formats} ...${wish} />`}
  </section>`;
}
