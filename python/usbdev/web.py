# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""<usbdev/web.h>: HTTP client, encodings, logins, link identifiers, share links and the state of the live streams.

Logins share a request path, so that only one runs at a time in a process; others wait for it. A login ends the process
with status 0 when its connection breaks, see `exit_with_error`.
"""

from __future__ import annotations

from typing import Any, NoReturn

from usbdev._library import (
    ID_SIZE,
    ask,
    call,
    encoded,
    ffi,
    int_from,
    library,
    new_buffer,
    number_or_none,
    text_from,
    text_in,
)
from usbdev._turns import login
from usbdev.errors import NotViewableError, UsbdevError
from usbdev.records import NasServer, ShareLink, from_c, to_c

_SESSION_SIZE = 128
_PATH_SIZE = 256
_AUTHORIZATION_SIZE = 256
_SHARE_ID_SIZE = 9
_HASH_SIZE = 33
_MESSAGE_SIZE = 32
_NO_PROFILE = -1
_NO_CODE = 0


def _count(function: str, *arguments: object) -> int:
    """Calls a function that returns a number of bytes, below 0 if it fails."""
    result = int(ask(function, *arguments))
    if result < 0:
        raise UsbdevError(function, result)
    return result


def request_path() -> str:
    """Returns the path of the request that `connect` sends (NVR_CGI)."""
    return text_in(library().NVR_CGI)


def set_request_path(path: str) -> None:
    """Sets the path of the request that `connect` sends, of at most 255 bytes (NVR_CGI)."""
    library().NVR_CGI = encoded(path, _PATH_SIZE)


@login
def connect(server: NasServer, size: int, chunk: int = 2048, with_password: bool = False) -> bytes:
    """Sends the request of the request path; returns the reply, cut to `size` bytes (connect_host)."""
    reply = new_buffer(size)
    count = _count("connect_host", to_c(server), reply, size, chunk, int(with_password))
    return bytes(ffi.buffer(reply, count))


def exit_with_error(text: str) -> NoReturn:
    """Prints the text and the system's error, and ends the process with status 0 (error)."""
    ask("error", encoded(text))
    raise AssertionError("the process has ended")


def receive(sock: int, size: int) -> bytes:
    """Waits up to 120 seconds and receives once, at most `size` bytes; b"" if the peer has closed (socket_read)."""
    buffer = new_buffer(size + 1)
    return bytes(ffi.buffer(buffer, _count("socket_read", sock, buffer, size)))


def send(sock: int, text: str) -> int:
    """Waits up to 120 seconds and sends a text; returns the number of bytes sent (socket_write)."""
    return _count("socket_write", sock, encoded(text))


def open_connection(host: str) -> int:
    """Connects to TCP port 80 of a host; returns the socket, which the caller closes (http_open)."""
    sock = ffi.new("int *")
    call("http_open", sock, encoded(host))
    return int(sock[0])


def read_line(sock: int, size: int = 2048) -> bytes:
    """Reads up to a line feed, at most `size` bytes (http_read_line)."""
    buffer = new_buffer(size)
    return bytes(ffi.buffer(buffer, _count("http_read_line", sock, buffer, size)))


def skip_head(sock: int) -> None:
    """Reads the head of a reply and drops it; fails unless the status is 200 OK (http_skip_nvr_http_header)."""
    if (result := ask("http_skip_nvr_http_header", sock)) != 1:
        raise UsbdevError("http_skip_nvr_http_header", result)


def send_request(sock: int, host: str, path: str, user: str, password: str) -> None:
    """Sends a request with user and password (http_send_cmd)."""
    call("http_send_cmd", sock, *map(encoded, (host, path, user, password)))


def close_connection(sock: int) -> None:
    """Closes a socket (http_close)."""
    call("http_close", sock)


def authorization(user: str, password: str) -> str:
    """Makes the text of an authorization line, "Basic ..."; empty for more than 128 bytes (getNVR_AUTH)."""
    return text_from("getNVR_AUTH", encoded(user), encoded(password), size=_AUTHORIZATION_SIZE)


def first_line(text: str) -> str | None:
    """Returns the first line of a text, None without a line feed (get_next_line)."""
    content = encoded(text)
    line = new_buffer(len(content) + 1)
    return None if ask("get_next_line", content, line) == -1 else text_in(line)


def _encoded_buffer(content: bytes) -> Any:
    return new_buffer((len(content) + 2) // 3 * 4 + 1)


def _most_decoded(content: bytes) -> int:
    """Returns a size with room for what the text decodes to, and for a terminating zero."""
    return (len(content) + 3) // 4 * 3 + 1


def base64_encode(content: bytes) -> str:
    """Encodes bytes in Base64 (Base64enc)."""
    out = _encoded_buffer(content)
    ask("Base64enc", content, len(content), out)
    return text_in(out)


def base64_encode_text(text: str) -> str:
    """Encodes a text in Base64 (Base64encs)."""
    content = encoded(text)
    out = _encoded_buffer(content)
    ask("Base64encs", content, out)
    return text_in(out)


def base64_decode(text: str) -> bytes:
    """Decodes Base64 up to the first "=" (Base64dec)."""
    content = encoded(text)
    out = ffi.new("unsigned char[]", _most_decoded(content))
    return bytes(ffi.buffer(out, ask("Base64dec", content, out)))


def base64_decode_text(text: str) -> str:
    """Decodes Base64 up to the first "=" to a text (Base64decs)."""
    content = encoded(text)
    out = new_buffer(_most_decoded(content))
    ask("Base64decs", content, out)
    return text_in(out)


def escape_query(url: str) -> str:
    """Escapes "/", "~" and blanks in the query of a URL (url_encode)."""
    content = encoded(url)
    out = new_buffer(3 * len(content) + 1)
    call("url_encode", out, content, len(content))
    return text_in(out)


@login
def log_in(server: NasServer) -> str:
    """Logs in at a host with user and password; returns the session's id (nas_auth)."""
    return text_from("nas_auth", to_c(server), size=_SESSION_SIZE)


@login
def log_out(server: NasServer, session: str) -> None:
    """Ends a session (nas_logout)."""
    _count("nas_logout", to_c(server), encoded(session))


@login
def is_session(server: NasServer, session: str) -> bool:
    """Checks a session at a host (nas_sid_auth)."""
    return bool(ask("nas_sid_auth", to_c(server), encoded(session)) == 0)


def session_in(reply: str) -> str:
    """Finds the session's id in the reply to a login (write_sid)."""
    return text_from("write_sid", encoded(reply), size=_SESSION_SIZE)


@login
def is_user(user: str, password: str) -> bool:
    """Checks a user and a password with a login at this host, which takes a second (vl_auth)."""
    return bool(ask("vl_auth", encoded(user), encoded(password)) == 0)


@login
def is_own_session(session: str) -> bool:
    """Checks a session at this host (vl_sid_auth)."""
    return bool(ask("vl_sid_auth", encoded(session)) == 0)


def new_share_id() -> str:
    """Makes the share id of a link: eight digits, the same for two calls in one second (generate_ssid)."""
    return text_from("generate_ssid", size=_SHARE_ID_SIZE)


def new_hash() -> str:
    """Makes a random identifier of 32 hexadecimal characters (generate_hash)."""
    result = text_from("generate_hash", size=_HASH_SIZE)
    if not result:  # the host provides no random text
        raise UsbdevError("generate_hash", 0)
    return result


def strip_hyphens(text: str) -> str:
    """Returns a text without its hyphens, and without blanks, line ends and double quotes at its end (strip)."""
    content = ffi.new("char[]", encoded(text))
    out = new_buffer(len(content))
    ask("strip", content, out)
    return text_in(out)


def set_share_link(link: ShareLink) -> ShareLink:
    """Stores the share settings of a profile; returns them with share id, token and hash (vl_set_share_link)."""
    return _changed("vl_set_share_link", link)


def share_link(profile: int) -> ShareLink:
    """Reads the share settings of a profile (vl_get_share_link)."""
    return _changed("vl_get_share_link", ShareLink(profile))


def renew_share_link(profile: int) -> ShareLink:
    """Gives a profile's share link a new share id, token and hash; returns only those (vl_renew_share_link)."""
    return _changed("vl_renew_share_link", ShareLink(profile))


def _changed(function: str, link: ShareLink) -> ShareLink:
    record = to_c(link)
    call(function, record)
    return from_c(ShareLink, record)


def remove_link_file(section: str) -> None:
    """Removes the symbolic link of the share link of a section, such as "ch3" (remove_hash_link)."""
    call("remove_hash_link", encoded(section))


def profile_of_share_id(ssid: str) -> int | None:
    """Finds the profile of the channel with a share id (vl_check_share_link_ssid)."""
    return number_or_none(ask("vl_check_share_link_ssid", encoded(ssid)))


def check_viewable(profile: int) -> None:
    """Raises NotViewableError unless the stream of a profile can be shown (vl_validate_chliveview)."""
    code = ffi.new("int *", _NO_CODE)
    result = ask("vl_validate_chliveview", profile, code)
    if result != 0:
        raise NotViewableError("vl_validate_chliveview", result, code[0] or None)


def opened_profile(ssid: str, token: str) -> int:
    """Returns the profile that a share id and a token open; else raises NotViewableError (vl_ssid_auth)."""
    profile, code = ffi.new("int *", _NO_PROFILE), ffi.new("int *", _NO_CODE)
    result = ask("vl_ssid_auth", encoded(ssid), encoded(token), profile, code)
    if result != 0:
        raise NotViewableError("vl_ssid_auth", result, code[0] or None)
    return int(profile[0])


def has_playlist(profile: int) -> bool:
    """Checks whether a profile's playlist exists (vl_get_hls_status)."""
    return int_from("vl_get_hls_status", profile) == 1


def signal_streaming(message: bytes) -> None:
    """Sends a message of 32 bytes to the streaming service (vl_StreamNotify)."""
    if len(message) != _MESSAGE_SIZE:
        raise ValueError(f"the message has {len(message)} bytes, not {_MESSAGE_SIZE}")
    call("vl_StreamNotify", message)


def is_read(node: int, codec: int) -> bool:
    """Checks whether the process runs that reads a camera's pictures (vl_SourcerStreamingProcess)."""
    return bool(ask("vl_SourcerStreamingProcess", node, codec) == 1)


def set_stream_available(profile: int, value: int) -> None:
    """Stores whether a profile's stream is available (mn_update_pfstate)."""
    call("mn_update_pfstate", profile, value)


def usb_ids(profile: int) -> str:
    """Finds the vendor and product ids of a profile's camera, such as "046d:0825" (vl_get_pidvid)."""
    return text_from("vl_get_pidvid", profile, size=ID_SIZE)
