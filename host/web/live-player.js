// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Plays a stream that the host sends as it comes, a fraction of a second after it was made. Where the browser cannot put
// what it receives into a picture itself, or nothing comes that way, the browser plays the stream's playlist by itself.

const kReserve = 0.1; // seconds that are left when the next fragment comes, as all of these
const kMoreReserve = 0.1; // after each time when it was too little
const kMostReserve = 1;
const kShrinks = 0.999; // to this part with each fragment
const kMostBehind = 1; // besides the reserve
const kKept = 10; // of what was shown already
const kFragment = 0.2;
const kMeasured = 10; // fragments
const kMostQueued = 50; // fragments
const kPlaylistType = "application/vnd.apple.mpegurl";

export class LivePlayer {
  static isSupported(video) {
    return "MediaSource" in window || video.canPlayType(kPlaylistType) !== "";
  }

  // Calls `ended` once, when nothing more will come, and `refused` when the browser plays only after its user has said so.
  constructor(video, playlist, ended, refused) {
    this.hasEnded = false;
    this.hasSound = undefined; // until it is known
    this._video = video;
    this._playlist = playlist;
    this._ended = ended;
    this._refused = refused;
    this._listeners = new AbortController();
    this._queue = [];
    this._spare = [];
    this._reserve = kReserve;
    this._listen(video, "error", () => this._end());
    this._listen(video, "waiting", () => this._keepMore());
    this._listen(video, "pause", () => video.ended || this.goOn());
    if ("MediaSource" in window) this._connect();
    else this._playPlaylist();
  }

  destroy() {
    this.hasEnded = true;
    this._listeners.abort();
    this._disconnect();
    this._video.removeAttribute("src");
    this._video.load();
  }

  // It is what the camera sees now. Keys for media and an iPhone's own player can stop it, and it would stand still and be
  // called live.
  goOn() {
    const { seekable, currentTime } = this._video;
    if (!this._source && currentTime > 0 && seekable.length > 0) this._video.currentTime = seekable.end(seekable.length - 1);
    this._start();
  }

  _listen(target, event, handle) {
    target.addEventListener(event, handle, { signal: this._listeners.signal });
  }

  _end() {
    if (this.hasEnded) return;
    this.hasEnded = true;
    this._disconnect();
    this._ended();
  }

  _playPlaylist() {
    if (this._video.canPlayType(kPlaylistType) === "") return this._end();
    this._play(this._playlist);
  }

  _play(source) {
    this._video.src = source;
    this._video.playbackRate = 1;
    this._start();
  }

  _start() {
    this._video.play().catch(({ name }) => name === "NotAllowedError" && !this.hasEnded && this._refused());
  }

  _connect() {
    const address = new URL("live", new URL(this._playlist, location.href));
    address.protocol = location.protocol.replace("http", "ws");
    this._socket = new WebSocket(address);
    this._socket.binaryType = "arraybuffer";
    this._listen(this._socket, "message", ({ data }) => (typeof data === "string" ? this._begin(data) : this._take(data)));
    this._listen(this._socket, "close", () => (this._source ? this._end() : this._playPlaylist()));
  }

  // A browser complains of a connection that is closed before it is there.
  _disconnect() {
    const socket = this._socket;
    if (socket?.readyState === WebSocket.CONNECTING) socket.addEventListener("open", () => socket.close());
    else socket?.close();
  }

  _begin(type) {
    if (!MediaSource.isTypeSupported(type)) return this._end();
    this.hasSound = type.includes("mp4a");
    this._source = new MediaSource();
    const address = URL.createObjectURL(this._source);
    this._listen(this._source, "sourceopen", () => {
      URL.revokeObjectURL(address);
      this._buffer = this._source.addSourceBuffer(type);
      this._listen(this._buffer, "updateend", () => this._append());
      this._append();
    });
    this._play(address);
  }

  _take(fragment) {
    this._queue.push(fragment);
    if (this._queue.length > kMostQueued) this._end();
    else this._append();
  }

  _append() {
    if (!this._buffer || this._buffer.updating || this._queue.length === 0 || this.hasEnded) return;
    try {
      this._keepUp();
      if (!this._forgets()) this._buffer.appendBuffer(this._queue.shift());
    } catch {
      this._end();
    }
  }

  // Stays a little behind the end of what has come: slowly by playing faster, and with a leap if that is far away.
  _keepUp() {
    const { buffered } = this._buffer;
    if (buffered.length === 0) return;
    const start = buffered.start(buffered.length - 1);
    const end = buffered.end(buffered.length - 1);
    const spare = end - this._video.currentTime;
    if (this._video.paused && this._video.currentTime > 0) return;
    if (spare > this._reserve + kMostBehind || this._video.currentTime < start) {
      this._video.currentTime = Math.max(start, end - this._reserve - kFragment);
      this._spare = [];
      return;
    }
    this._spare.push(spare);
    if (this._spare.length > kMeasured) this._spare.shift();
    this._reserve = Math.max(kReserve, this._reserve * kShrinks);
    const tooMuch = Math.min(...this._spare) - this._reserve;
    this._video.playbackRate = tooMuch > 0.5 ? 1.5 : tooMuch > 0.05 ? 1.1 : 1;
  }

  // Returns whether it removes what was shown long ago; it is called again when that is done.
  _forgets() {
    const { buffered } = this._buffer;
    if (buffered.length === 0) return false;
    const end = buffered.end(buffered.length - 1) - kKept;
    if (buffered.start(0) > end - kKept) return false;
    this._buffer.remove(0, end);
    return true;
  }

  // It waits at the begin and after each leap too.
  _keepMore() {
    if (this._spare.length === 0) return;
    this._spare = [];
    this._reserve = Math.min(kMostReserve, this._reserve + kMoreReserve);
  }
}
