# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The login service with the library as its client."""

from __future__ import annotations

import json

from conftest import RunOnHost

# A name and a password with everything that the client escapes and everything that it does not.
USER = "Ann/e ~B+=#ü"
PASSWORD = "?>~ /+=\x7eü>>?"
ADD = f"printf %s '{PASSWORD}' | login-users add '{USER}'\n"
LOG = "/var/log/vl/login-requests.log"
URL = "http://127.0.0.1:58080/cgi-bin/"
GET = f"get() {{ curl --silent --show-error --max-time 10 '{URL}'\"$1\"; }}\n"
SESSION = "session=$(get 'authLogin.cgi?user=ann&pwd=c2VjcmV0' | sed -n 's/.*<authSid><!\\[CDATA\\[\\(.*\\)\\]\\]>.*/\\1/p')\n"
LOG_IN = GET + "echo secret | login-users add ann\n" + SESSION


def logged(count: int) -> str:
    """Prints the log of requests, once it has as many: a client has its answer before the line is written."""
    return f"until_true 'test $(wc -l <{LOG}) -ge {count}'; cat {LOG}\n"


def requests(text: str, *fields: str) -> list[tuple[object, ...]]:
    """Of each request in the log, the given fields."""
    return [tuple(entry.get(field) for field in fields) for entry in map(json.loads, text.splitlines())]


def test_the_right_password_opens_a_session_which_the_library_closes_again(with_login: RunOnHost) -> None:
    done = with_login(ADD + f"call vl_auth '{USER}' '{PASSWORD}' >/tmp/result\n" + logged(2) + "tail -n 1 /tmp/result >&2")
    login, logout = requests(done.stdout, "request", "user", "passed", "session", "client", "path", "status")
    assert (login[:3], logout[:3]) == (("login", USER, True), ("logout", None, True))
    assert login[3] == logout[3] and len(str(login[3])) == 8
    assert login[4:] == ("127.0.0.1", "/cgi-bin/authLogin.cgi", 200)
    assert logout[4:] == ("127.0.0.1", "/cgi-bin/authLogout.cgi", 200)
    assert done.stderr == "0\n"


def test_a_wrong_password_and_an_unknown_user_are_refused_and_logged(with_login: RunOnHost) -> None:
    done = with_login(
        ADD + f"call vl_auth '{USER}' wrong-one 2>/dev/null; call vl_auth nobody '{PASSWORD}' 2>/dev/null\n" + logged(2)
    )
    first, second, *log = done.stdout.splitlines()
    assert (first, second) == ("-1", "-1")
    assert requests("\n".join(log), "user", "passed", "session") == [(USER, False, None), ("nobody", False, None)]
    assert "wrong" not in done.stdout


def test_a_session_counts_until_it_is_logged_out(with_login: RunOnHost) -> None:
    done = with_login(
        LOG_IN + 'call vl_sid_auth "$session"; get "authLogout.cgi?logout=1&sid=$session" >/tmp/answer\n'
        'call vl_sid_auth "$session"; cat /tmp/answer'
    )
    before, after, *answer = done.stdout.splitlines()
    assert (before, after) == ("0", "-1")
    assert "<authPassed><![CDATA[1]]></authPassed>" in answer


def test_sessions_end_with_the_service(on_host: RunOnHost) -> None:
    start = "rm -f /tmp/said; login-service 2>/tmp/said & service=$!; until_true grep -q listening /tmp/said\n"
    done = on_host(
        start + LOG_IN + 'call vl_sid_auth "$session"; kill $service; wait $service; echo "ended with $?"\n'
        + start + 'call vl_sid_auth "$session"; kill $service'
    )  # fmt: skip
    assert done.stdout == "0\nended with 0\n-1\n"


def test_an_invented_or_missing_session_is_not_valid(with_login: RunOnHost) -> None:
    done = with_login(LOG_IN + "call vl_sid_auth 00000000; call vl_sid_auth ''; get authLogin.cgi; get authLogout.cgi")
    assert done.stdout.splitlines()[:2] == ["-1", "-1"]
    assert done.stdout.count("<authPassed><![CDATA[0]]></authPassed>") == 2


def test_a_user_who_is_removed_cannot_log_in_any_more(with_login: RunOnHost) -> None:
    done = with_login(LOG_IN + f"login-users remove ann\n{SESSION}" + 'echo "session: $session"; login-users list')
    assert done.stdout == "session: \n"


def test_the_service_listens_on_the_port_of_the_hosts_settings(on_host: RunOnHost) -> None:
    done = on_host(
        "sed -i 's/^InnerWebAccessPort = .*/InnerWebAccessPort = 8099/' /etc/config/Tundrel.conf\n"
        "login-service 2>/tmp/said & service=$!; until_true grep -q listening /tmp/said\n"
        "call vl_sid_auth none >/dev/null; kill $service; grep listening /tmp/said\n" + logged(1)
    )
    said, log = done.stdout.split("\n", 1)
    assert said == "login-service: listening on 127.0.0.1:8099"
    assert requests(log, "request", "passed") == [("check", False)]


def test_other_pages_and_methods_are_refused_and_logged(with_login: RunOnHost) -> None:
    done = with_login(f"curl -s {URL}other.cgi >/dev/null; curl -s --data x=1 {URL}authLogin.cgi >/dev/null\n" + logged(2))
    assert requests(done.stdout, "path", "status") == [("/cgi-bin/other.cgi", 404), ("/cgi-bin/authLogin.cgi", 405)]


def test_a_body_in_chunks_is_refused_whatever_their_size(with_login: RunOnHost) -> None:
    head = r"POST /cgi-bin/authLogin.cgi HTTP/1.1\r\nHost: h\r\nTransfer-Encoding: chunked\r\n\r\n"
    send = "| timeout 10 socat -t 10 - tcp:127.0.0.1:58080\n"
    done = with_login(f"for size in 2 -1; do printf '{head}%s\\r\\n{{}}' $size {send} done\n" + GET + "get authLogin.cgi")
    assert done.stdout.count("HTTP/1.1 400 Bad Request\n") == 2
    assert "<authPassed><![CDATA[0]]></authPassed>" in done.stdout


def test_who_asks_while_the_service_manager_holds_the_port_is_answered_when_the_service_runs(on_host: RunOnHost) -> None:
    held = "systemd-socket-activate --listen=127.0.0.1:58080 /usr/bin/env login-service 2>/tmp/log & until_true grep -q Listening /tmp/log\n"
    done = on_host(held + LOG_IN + 'call vl_sid_auth "$session"; call vl_sid_auth another; kill $!; wait $!; cat /tmp/log >&2')
    assert done.stdout == "0\n-1\n"
    assert "login-service: listening on 127.0.0.1:58080" in done.stderr


def test_with_another_port_in_the_settings_than_the_held_one_the_service_listens_there_itself(on_host: RunOnHost) -> None:
    held = "systemd-socket-activate --listen=127.0.0.1:58081 /usr/bin/env login-service 2>/tmp/log & until_true grep -q Listening /tmp/log\n"
    start = "curl --silent --max-time 1 http://127.0.0.1:58081; until_true grep -q 58080 /tmp/log\n"
    assert on_host(held + start + LOG_IN + 'call vl_sid_auth "$session"; kill $!').stdout == "0\n"
