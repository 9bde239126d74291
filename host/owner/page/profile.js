// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// One camera with its profile: what it shows, and all that can be set.

import { html, useEffect, useLayoutEffect, useRef, useState } from "../libraries/preact.js";
import * as actions from "./actions.js";
import { inactive, needsHost } from "./away.js";
import { attachedWithoutProfile, channelOf, lastStanding, ownName, profileName, standing, withPicture } from "./channels.js";
import { Icon } from "./icons.js";
import { LiveView } from "./live_view.js";
import { Standing } from "./overview.js";
import { Button, Empty, PressedChoice, Switch, useAnswer, withPorts } from "./parts.js";
import { Reasons } from "./reasons.js";
import { kValueTexts, rateText } from "./settings.js";
import { inCodec, StreamForm, useWish } from "./stream_form.js";
import { plain, t } from "./texts.js";

const kLongestName = 63;
const kRest = 1000; // milliseconds
const kSoundCodecs = ["aac", "ulaw"];

const kTurns = [
  { name: "turn.none", values: { flip: false, mirror: false } },
  { name: "turn.half", values: { flip: true, mirror: true } },
  { name: "mirror", values: { flip: false, mirror: true } },
  { name: "flip", values: { flip: true, mirror: false } },
];
const turnOf = ({ flip, mirror }) => kTurns.find(({ values }) => values.flip === Boolean(flip) && values.mirror === Boolean(mirror)).name;

// With which settings the picture takes its own: those of the stream, or with H.264 what is chosen in the lists, saved or
// not; undefined if it never does.
function inEffect(channel, formats, chosen) {
  if (channel.codec === "h264") return {};
  return formats ? inCodec(formats, chosen, "h264") : undefined;
}

const sizeText = ({ width, height }) => kValueTexts.size(`${width}x${height}`);

function costOf(channel, wish) {
  const [rate, before] = [rateText(wish.rate), rateText(channel.rate)];
  const [size, sizeBefore] = [sizeText(wish), sizeText(channel)];
  if (size !== sizeBefore) return t(rate === before ? "picture.cost_only_size" : "picture.cost_size", { rate, before, size, size_before: sizeBefore });
  return rate === before ? t("picture.same") : t("picture.cost", { rate, before });
}

function WhenInEffect({ channel, formats, wish }) {
  if (formats && !wish) return html`<p class="quiet">${t("picture.never")}</p>`;
  return html`<p class="quiet cost">${t("picture.mjpeg")} ${wish && costOf(channel, wish)}</p>`;
}

function PictureSettings({ channel, formats, chosen }) {
  const isEncoded = channel.codec === "h264";
  const wish = inEffect(channel, formats, chosen);
  const set = (values) => {
    if (isEncoded) return actions.setStream(channel, values);
    const after = { ...channel, ...values };
    const consequences = [costOf(channel, wish), `${t("turn")}: ${t(turnOf(after))}.`, t(after.overlay ? "picture.with_time" : "picture.without_time")];
    return actions.encode(channel, { ...wish, ...values }, consequences);
  };
  return html`<section class="card" aria-labelledby="picture">
    <h2 id="picture">${t("picture")}</h2>
    ${!isEncoded && html`<${WhenInEffect} channel=${channel} formats=${formats} wish=${wish} />`}
    <${PressedChoice} id="turn" label=${t("turn")} value=${turnOf(channel)} disabled=${!wish} ...${needsHost()} change=${(name) => set(kTurns.find((one) => one.name === name).values)}
      options=${kTurns.map(({ name }) => ({ value: name, text: t(name) }))} />
    <${Switch} label=${t("overlay")} on=${Boolean(channel.overlay)} disabled=${!wish} ...${needsHost()} change=${(on) => set({ overlay: on })} />
    ${isEncoded && html`<p class="quiet">${t("picture.explained")}</p>`}
  </section>`;
}

// Each change begins the stream anew, and each step of the keyboard is one; so it is made when the slider rests, or is left.
function Volume({ channel }) {
  const stored = channel.sound.volume;
  const [volume, setVolume] = useState(stored);
  useEffect(() => setVolume(stored), [stored]);
  const store = () => volume !== stored && actions.setStream(channel, { volume });
  useEffect(() => {
    const timer = setTimeout(store, kRest);
    return () => clearTimeout(timer);
  }, [volume]);
  return html`<div class="field"><label for="volume">${t("volume.percent", { percent: volume })}</label>
    <input id="volume" type="range" min="0" max="100" value=${volume} ...${needsHost()}
      onInput=${(event) => setVolume(Number(event.target.value))} onBlur=${store} /></div>`;
}

function Sound({ channel }) {
  const { sound } = channel;
  if (!sound?.card) {
    return html`<section class="card" aria-labelledby="sound"><h2 id="sound">${t("sound")}</h2><p class="quiet">${t("sound.none")}</p></section>`;
  }
  return html`<section class="card" aria-labelledby="sound">
    <h2 id="sound">${t("sound")}</h2>
    <${Switch} label=${t("sound.on")} on=${sound.on} ...${needsHost()} change=${(on) => actions.setStream(channel, { sound: on })} />
    ${sound.on && html`<${PressedChoice} id="sound-codec" label=${t("sound.codec")} value=${sound.codec} options=${kSoundCodecs.map((one) => ({ value: one, text: t(`sound.${one}`) }))}
        ...${needsHost()} change=${(codec) => actions.setStream(channel, { sound_codec: codec })} />
      <${Volume} channel=${channel} />`}
  </section>`;
}

function Rename({ channel }) {
  const field = useRef(null);
  const name = ownName(channel);
  // Before anybody can type.
  useLayoutEffect(() => {
    field.current.value = name;
  }, [name]);
  const submit = (event) => {
    event.preventDefault();
    actions.rename(channel, event.target.elements.name.value.trim());
  };
  return html`<form class="line-form" onSubmit=${submit}>
    <div class="field"><label for="name">${t("name")}</label>
      <input id="name" name="name" ref=${field} maxlength=${kLongestName} required autocomplete="off" /></div>
    <button class="plain" ...${needsHost()}>${t("do.rename")}</button>
  </form>`;
}

const kRuns = ["streams", "begins"];

function CameraSettings({ channel, state }) {
  const isAway = actions.isAway(channel);
  const runs = kRuns.includes(lastStanding(channel));
  const { able, others } = actions.movesTo(channel, state);
  return html`<section class="card" aria-labelledby="camera">
    <h2 id="camera">${t("camera")}</h2>
    <p class="quiet"><bdi>${plain(channel.device)}</bdi> · ${t("channel_number", { number: channel.channel })} · ${t("port")} <span class="port">${channel.port}</span></p>
    <${Rename} channel=${channel} />
    ${!isAway && html`<${Switch} label=${t("port.on")} on=${channel.switched_on !== false} ...${needsHost()} change=${(on) => actions.switchPort(channel, on, state)} />`}
    <div class="buttons">
      <a class="button plain" href=${`#/sharing/${channel.profile}`}><${Icon} name="sharing" />${t("do.share")}</a>
      <a class="button plain" href="#/charts"><${Icon} name="charts" />${t("charts.when")}</a>
      <${Button} act=${() => actions.move(channel, state)} ...${able.length > 0 ? needsHost() : inactive("not-moved")}>${t("do.move_on")}<//>
      ${isAway
        ? html`<${Button} kind="danger" act=${() => actions.forget(channel)} ...${needsHost()}>${t("do.forget")}<//>`
        : html`<${Button} kind="danger" act=${() => actions.unbind(channel, runs)} ...${needsHost()}>${t(runs ? "do.unbind" : "do.give_up")}<//>`}
    </div>
    ${able.length === 0 && html`<p id="not-moved" class="quiet">${withPorts([t("move.nowhere", { button: t("do.move_on") }), ...others, t("move.nowhere_cure")].join(" "))}</p>`}
  </section>`;
}

function NoCamera({ profile, state }) {
  const cameras = attachedWithoutProfile(state);
  return html`<${Empty} icon="camera" title=${t("profile.empty")}>
    <p>${t(cameras.length > 0 ? "profile.empty_choose" : "profile.empty_cure")}</p>
    <div class="buttons">${cameras.map((one) => html`<${Button} key=${one.channel} act=${() => actions.assign(one, profile.profile, state)} ...${needsHost()}>
      ${t("camera_in_port", { name: ownName(one), port: one.port })}<//>`)}</div>
  <//>`;
}

function NotLive({ channel }) {
  const texts = { begins: "live_view.begins", unknown: "live_view.away" };
  return html`<div class="live"><div class="over"><${Icon} name="camera" /><p>${t(texts[standing(channel)] ?? "live_view.stopped")}</p></div></div>`;
}

export function Profile({ profile, state }) {
  const channel = profile && channelOf(state, profile.profile);
  if (!channel) return html`<${NoCamera} profile=${profile} state=${state} />`;
  return html`<${Camera} key=${channel.channel} channel=${channel} profile=${profile} state=${state} />`;
}

function Camera({ channel, profile, state }) {
  const isAway = actions.isAway(channel);
  const [formats, again] = useAnswer(isAway ? null : `/channels/${channel.channel}/formats`);
  const wish = useWish(channel);
  const [isSeen, setSeen] = useState(false);
  const name = profileName(state, profile);
  return html`<p class="lead"><${Standing} word=${standing(withPicture(channel, isSeen))} />
      <a class="beside" href="#/"><${Icon} name="back" />${t("overview")}</a></p>
    <div class="columns">
      <div>
        ${channel.streams ? html`<${LiveView} profile=${profile.profile} name=${name} rate=${channel.rate} hasSound=${channel.sound?.on} setSeen=${setSeen} hasControls />` : html`<${NotLive} channel=${channel} />`}
        <${Reasons} channel=${channel} state=${state} />
        <${CameraSettings} channel=${channel} state=${state} />
      </div>
      <div>
        ${!isAway && html`<${StreamForm} channel=${channel} formats=${formats} again=${again} ...${wish} />`}
        <${PictureSettings} channel=${channel} formats=${formats} chosen=${wish.wish} />
        <${Sound} channel=${channel} />
      </div>
    </div>`;
}
