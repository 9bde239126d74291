// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The links with which people without an account watch a camera.

import { html, useEffect, useMemo, useState } from "../libraries/preact.js";
import qrcode from "../libraries/qrcode.js";
import { attempt, explainReading } from "./actions.js";
import { call, read } from "./api.js";
import { needsHost } from "./away.js";
import { attachedWithoutProfile, channelOf, lastStanding, nameOf, profileName } from "./channels.js";
import { copy } from "./clipboard.js";
import { Icon } from "./icons.js";
import { ask, notice } from "./messages.js";
import { Button, Empty, Failed, Loading, PasswordField, Switch } from "./parts.js";
import { timesBack } from "./store.js";
import { list, number, plain, t } from "./texts.js";

const kLongestPassword = 31;
const kShortestPassword = 6;
const kQuiet = 4; // modules around the code
const kThisMachine = /^(localhost|127\.\d+\.\d+\.\d+|\[::1\])$/;

// The size of the code, and its dark modules as a path.
function drawCode(text) {
  const code = qrcode(0, "M");
  code.addData(text);
  code.make();
  const count = code.getModuleCount();
  const dark = [];
  for (let row = 0; row < count; row += 1) {
    for (let column = 0; column < count; column += 1) {
      if (code.isDark(row, column)) dark.push(`M${column + kQuiet} ${row + kQuiet}h1v1h-1z`);
    }
  }
  return [count + 2 * kQuiet, dark.join("")];
}

function QrCode({ text }) {
  const [size, dark] = useMemo(() => drawCode(text), [text]);
  return html`<figure class="qr">
    <svg viewBox=${`0 0 ${size} ${size}`} role="img" aria-label=${t("share.qr")} shape-rendering="crispEdges">
      <rect width=${size} height=${size} fill="#fff" /><path d=${dark} fill="#000" /></svg>
    <figcaption class="quiet">${t("share.scan")}</figcaption>
  </figure>`;
}

// The link begins as the address of this page does, unless others cannot reach that.
const isForAll = !kThisMachine.test(location.hostname);
const originOf = (host) => (isForAll ? location.origin : host.origin ?? location.origin);

// A code for a phone is behind a button, because it is of no use on the phone itself.
function Link({ profile, share, renew, host }) {
  const [hasCode, setCode] = useState(false);
  const link = originOf(host) + share.page;
  const canBeOpened = isForAll || host.origin !== null;
  const id = `link-${profile}`;
  return html`<div class="share-link">
    ${!canBeOpened && html`<p class="care-box">${t(host.open ? "share.no_network" : "share.not_open", { host: plain(host.name) })}</p>`}
    <div class="field"><label for=${id}>${t("share.link")}</label><output id=${id} class="link">${link}</output></div>
    <div class="buttons">
      <${Button} icon="copy" kind=${canBeOpened ? "" : "plain"} act=${() => copy(link, "share.copied", document.getElementById(id))}>${t("do.copy")}<//>
      ${canBeOpened && html`<${Button} act=${() => setCode(!hasCode)} aria-expanded=${hasCode}>${t(hasCode ? "do.hide_code" : "do.show_code")}<//>`}
      <a class="button plain" href=${share.page} target="_blank" rel="noopener"><${Icon} name="open" />${t("share.as_guest")}</a>
      <${Button} act=${renew} ...${needsHost()}>${t("do.renew")}<//>
    </div>
    ${hasCode && html`<${QrCode} text=${link} />`}
  </div>`;
}

function Password({ profile, share, protect, name }) {
  const id = `password-${profile}`;
  const [isShort, setShort] = useState(false);
  const submit = async (event) => {
    event.preventDefault();
    const field = event.target.elements.password;
    setShort([...field.value].length < kShortestPassword);
    if ([...field.value].length < kShortestPassword) return field.focus();
    if (await protect(share.password ? "change_password" : "set_password", field.value)) field.value = "";
  };
  return html`<p class="protection"><${Icon} name=${share.password ? "lock" : "info"} />
      <span><strong>${t(share.password ? "share.has_password" : "share.has_none")}</strong> ${t(name ? "share.guest_named" : "share.guest", { name })}</span></p>
    <form class="line-form" onSubmit=${submit} onInput=${() => setShort(false)}>
      <${PasswordField} id=${id} label=${t(share.password ? "share.new_password" : "share.password")} maxlength=${kLongestPassword}
        autocomplete="new-password" aria-invalid=${isShort} aria-describedby=${`${id}-rule`} />
      <p id=${`${id}-rule`} class=${isShort ? "problem" : "quiet"} role="status">
        ${isShort && html`<${Icon} name="alert" />`}${t(isShort ? "share.password_short" : "share.password_rule", { least: kShortestPassword })}</p>
      <button class="plain" ...${needsHost()}>${t(share.password ? "do.change_password" : "do.set_password")}</button>
      ${share.password && html`<${Button} act=${() => protect("remove_password", null)} ...${needsHost()}>${t("do.remove_password")}<//>`}
    </form>`;
}

// What guests see of a camera that does not stream, and when that changes.
const kGuestsSee = ["unplugged", "displaced", "switched_off", "waits"];

function GuestsSee({ channel }) {
  const word = lastStanding(channel);
  return kGuestsSee.includes(word) && html`<p class="care-box">${t(`share.now.${word}`)}</p>`;
}

function viewersText(count) {
  if (count === 0) return t("share.nobody_watches");
  return count === 1 ? t("share.one_watches") : t("share.many_watch", { count: number(count) });
}

// A browser that plays the playlist, as that of an iPhone does, is not seen to come and go.
const Viewers = ({ count }) => html`<p role="status" class=${`standing ${count > 0 ? "good" : "calm"}`}>${viewersText(count)}</p>
  <p class="quiet">${t("share.uncounted")}</p>`;

// What the host tells of each profile that a camera has: null until it has told of all of them, so that no card moves
// another one away, and undefined if it did not.
function useShares(channels) {
  const [shares, setShares] = useState(null);
  const shareOf = async ({ profile }) => [profile, await read(`/profiles/${profile}/share`)];
  const load = async () => {
    try {
      setShares(Object.fromEntries(await Promise.all(channels.map(shareOf))));
    } catch (problem) {
      explainReading(problem);
      setShares((before) => before ?? undefined);
    }
  };
  useEffect(() => {
    load();
  }, [channels.map((one) => `${one.profile} ${one.shared}`).join(), timesBack()]);
  return [shares, load];
}

function losing(guests) {
  if (guests === 0) return t("share.nobody_watches");
  return guests === 1 ? t("guests.one_loses") : t("guests.many_lose", { count: number(guests) });
}

// What becomes of guests, of the link and of the password is said before.
const sure = (kind, name, share, guests) => ask({
  title: t(`${kind}.title`, { name }),
  consequences: [losing(guests), t(`${kind}.link`), share.password && t(`${kind}.password`)].filter(Boolean),
  yes: t(`do.${kind}`),
  isLoss: true,
});

function SharedProfile({ profile, share, load, state }) {
  const name = profileName(state, profile);
  const isSure = (kind) => sure(kind, name, share, state.viewers[profile.profile]);
  const send = async (method, path, body, done) => {
    const worked = await attempt(() => call(method, `/profiles/${profile.profile}${path}`, body));
    await load();
    if (worked) notice(t(`done.${done}`, { name }));
    return worked;
  };
  const turn = async (on) => {
    if (on) await send("PUT", "/share", { on }, "shared");
    else if (await isSure("revoke")) await send("PUT", "/share", { on }, "revoked");
  };
  const renew = async () => (await isSure("renew")) && send("POST", "/share/renewal", {}, "renewed");
  const protect = async (kind, password) =>
    (await isSure(kind)) && send("PUT", "/share", { on: true, password }, kind);
  return html`<li class="card share" data-profile=${profile.profile}>
    <h2><bdi>${name}</bdi></h2>
    <${Switch} label=${t("share.on")} on=${share.on} ...${needsHost()} change=${turn} />
    ${share.on && html`<${GuestsSee} channel=${channelOf(state, profile.profile)} />
      <${Viewers} count=${state.viewers[profile.profile]} />
      <${Link} profile=${profile.profile} share=${share} renew=${renew} host=${state.host} />
      <${Password} profile=${profile.profile} share=${share} protect=${protect} name=${plain(profile.name)} />`}
    ${!share.on && html`<p class="quiet">${t("share.off")}</p>`}
  </li>`;
}

// The camera from whose page one comes is the first.
export function Sharing({ state, profile: first }) {
  const others = attachedWithoutProfile(state);
  const bound = state.profiles.filter((one) => channelOf(state, one.profile)).sort((one, other) => (other === first) - (one === first));
  const [shares, load] = useShares(bound.map((one) => channelOf(state, one.profile)));
  if (bound.length === 0) return html`<${Empty} icon="sharing" title=${t("share.empty")}><p>${t("share.empty_cure")}</p><//>`;
  return html`<p class="lead">${t("share.explained")}</p>
    ${shares === null && html`<${Loading} />`}
    ${shares === undefined && html`<${Failed} again=${load} />`}
    ${shares && html`<ul class="shares">${bound.filter((one) => shares[one.profile]).map((one) => html`
      <${SharedProfile} key=${one.profile} profile=${one} share=${shares[one.profile]} load=${load} state=${state} />`)}</ul>
      ${others.length > 0 && html`<p class="quiet">${t("share.others", { names: list(others.map(nameOf)) })}</p>`}`}`;
}
