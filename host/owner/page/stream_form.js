// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// A form that offers only what the camera can do, and then shows what was asked for and what was taken.

import { html, useState } from "/libraries/preact.js";
import { setStream } from "/page/actions.js";
import { Busy, Button, Choice, Failed, useAnswer } from "/page/parts.js";
import { kValueTexts, settingName } from "/page/settings.js";
import { t } from "/page/texts.js";

const sizeKey = ({ width, height }) => `${width}x${height}`;

// The wish, as near to what the camera offers as it can be.
function offered(formats, wish) {
  const codec = formats.codecs.find((one) => one.codec === wish.codec) ?? formats.codecs[0];
  const size = codec.sizes.find((one) => sizeKey(one) === wish.size) ?? codec.sizes[0];
  const rate = size.rates.find((one) => String(one) === wish.rate) ?? size.rates.at(-1);
  return { codec, size, rate };
}

const asOf = (channel) => ({ codec: channel.codec, size: sizeKey(channel), rate: String(channel.rate) });

function Taken({ outcome }) {
  const { asked, taken, not_stored: notStored = [] } = outcome;
  const [before, after] = [asked, { ...asked, ...taken }].map((one) => ({ ...one, size: sizeKey(one) }));
  const rows = Object.entries(kValueTexts).map(([name, text]) => ({ name, asked: text(before[name]), taken: text(after[name]) }));
  const isAll = rows.every((one) => one.asked === one.taken);
  return html`<div class="taken" role="status">
    <p>${t(isAll ? "taken.all" : "taken.other")}</p>
    ${!isAll && html`<table><thead><tr><td></td><th scope="col">${t("asked")}</th><th scope="col">${t("taken")}</th></tr></thead>
      <tbody>${rows.map((one) => html`<tr key=${one.name} class=${one.asked === one.taken ? "" : "differs"}>
        <th scope="row">${t(one.name)}</th><td>${one.asked}</td><td>${one.taken}</td></tr>`)}</tbody></table>`}
    ${notStored.length > 0 && html`<p>${t("not_stored", { names: notStored.map(settingName).join(", ") })}</p>`}
  </div>`;
}

function Choices({ formats, wish, setWish }) {
  const { codec, size, rate } = offered(formats, wish);
  const options = {
    codec: formats.codecs.map((one) => ({ value: one.codec, text: kValueTexts.codec(one.codec) })),
    size: codec.sizes.map((one) => ({ value: sizeKey(one), text: kValueTexts.size(sizeKey(one)) })),
    rate: size.rates.map((one) => ({ value: String(one), text: kValueTexts.rate(one) })),
  };
  const values = { codec: codec.codec, size: sizeKey(size), rate: String(rate) };
  return Object.keys(options).map((name) => html`<${Choice} key=${name} id=${`stream-${name}`} label=${t(name)} value=${values[name]}
    options=${options[name]} change=${(value) => setWish({ ...values, [name]: value })} />`);
}

function Form({ channel, formats }) {
  const [wish, setWish] = useState(asOf(channel));
  const [outcome, setOutcome] = useState(null);
  const [isAsking, setAsking] = useState(false);
  const submit = async (event) => {
    event.preventDefault();
    const { codec, size, rate } = offered(formats, wish);
    setAsking(true);
    setOutcome(null);
    const answer = await setStream(channel, { codec: codec.codec, width: size.width, height: size.height, rate });
    setAsking(false);
    if (answer) setOutcome(answer);
    else setWish(asOf(channel));
  };
  return html`<form class="stream-form" onSubmit=${submit}>
    <div class="fields"><${Choices} formats=${formats} wish=${wish} setWish=${setWish} /></div>
    <button disabled=${isAsking}>${t(isAsking ? "storing" : "store")}</button>
    ${outcome && html`<${Taken} outcome=${outcome} />`}
  </form>`;
}

export function StreamForm({ channel }) {
  const [formats, again] = useAnswer(`/channels/${channel.channel}/formats`);
  const isEmpty = formats?.codecs.length === 0;
  return html`<section class="card" aria-labelledby="stream">
    <h2 id="stream">${t("stream")}</h2>
    <p class="quiet">${t("stream.explained")}</p>
    ${formats === null && html`<${Busy} text=${t("formats.asking")} />`}
    ${formats === undefined && html`<${Failed} again=${again} />`}
    ${isEmpty && html`<p>${t("formats.none")}</p><${Button} act=${again}>${t("again")}<//>`}
    ${formats && !isEmpty && html`<${Form} channel=${channel} formats=${formats} />`}
  </section>`;
}
