"""The manager's live streams: what it starts, restarts and stops when the library tells of changes."""

from __future__ import annotations

from conftest import HERE, RunOnHost

STREAM = "/mnt/ext/opt/apps/Velmora2/hls/channel2"
LOG = "/var/log/vl/manager-service.log"
# A camera with profile 1, streaming in small pictures as soon as its settings are stored.
SHELL = f"""
sim plug hd-pro-webcam 3-1 >/dev/null; usbdevctl assign 3-1 1
store() {{ /usr/bin/python3 -B {HERE}/set_stream.py 1 "$@"; }}
switch() {{ call vl_set_usbslot_switch 3-1 "$1" 127.0.0.1 >/dev/null; }}
live() {{ until_true test -e {STREAM}/playlist.m3u8; }}
said() {{ until_true "[ \\"\\$(grep -c '$1' {LOG})\\" -ge $2 ]"; }}
probe() {{ ffprobe -v error -select_streams v:0 -show_entries stream=codec_name,width,height,r_frame_rate \\
  -of csv=p=0:nk=1 {STREAM}/0.ts | head -n 1; }}
"""
SMALL = "store width=160 height=120 framerate=15\n"
STATUS = f"/usr/bin/python3 -B {HERE}/streaming_status.py 1 0\n"


def test_a_profile_streams_with_its_size_and_rate_until_its_slot_is_off(with_services: RunOnHost) -> None:
    done = with_services(
        SHELL + SMALL + "live; probe\n" + STATUS
        + "store framerate=10 vcodec=0; said 'at 10.00' 1; live; probe\n" + STATUS
        + "switch off; said 'no more' 2\n" + STATUS + f"ls {STREAM} | wc -l"
    )  # fmt: skip
    assert (done.stdout.splitlines(), done.stderr) == (
        ["h264,160,120,15/1", "playlist v4l2_read", "h264,160,120,10/1", "playlist HDpipe", "no playlist", "0"],
        "",
    )


def test_a_slot_that_is_switched_on_streams_again_until_the_profile_is_cleared(with_services: RunOnHost) -> None:
    done = with_services(
        SHELL + SMALL + "switch off; said 'no more' 1; switch enable; said 'streams 160' 2\n"
        "usbdevctl clear 1 >/dev/null; said 'no more' 2\n" + STATUS + f"grep '^profile' {LOG}"
    )  # fmt: skip
    streams, no_more = "profile 1 streams 160x120 at 15.00 from camera 0", "profile 1 streams no more"
    assert done.stdout.splitlines() == ["no playlist", streams, no_more, streams, no_more]


def test_a_stream_is_back_after_a_reboot_from_the_node_that_its_camera_has_then(with_services: RunOnHost) -> None:
    done = with_services(
        SHELL + SMALL + "said 'streams 160' 1; sandbox reboot --plug hd-usb-camera 1-1 2>/dev/null\n"
        f"said 'streams 160' 2; live; grep '^profile' {LOG}"
    )  # fmt: skip
    streams, no_more = "profile 1 streams 160x120 at 15.00 from camera {}".format, "profile 1 streams no more"
    assert done.stdout.splitlines() == [streams(0), no_more, streams(2)]


MANAGER = "manager-service >>/tmp/out 2>&1 & manager=$!\n"


def test_the_managers_life_is_that_of_the_streams(on_host: RunOnHost) -> None:
    done = on_host(
        SHELL.replace(LOG, "/tmp/out") + SMALL + MANAGER + "live\n" + STATUS
        + "grep -A1 '<pf1>' /etc/config/vl_pfstate.conf | xargs\n"
        + "kill $manager; wait $manager; echo $?\n" + STATUS + "grep -A1 '<pf1>' /etc/config/vl_pfstate.conf | xargs\n"
    )  # fmt: skip
    available = "<pf1> <available>{}</available>".format
    assert done.stdout.splitlines() == ["playlist v4l2_read", available(1), "0", "no playlist", available(0)]


def test_a_stream_that_ends_by_itself_is_told_and_started_with_the_next_change(on_host: RunOnHost) -> None:
    done = on_host(
        SHELL.replace(LOG, "/tmp/out") + SMALL + MANAGER + "said 'streams 160' 1\n"
        "kill -9 $(ps | awk '$4 == \"v4l2_read\" {print $1}'); said 'has ended' 1; store; said 'streams 160' 2\n"
        + STATUS + "grep -o 'the stream of.*' /tmp/out"
    )  # fmt: skip
    status, ended = done.stdout.splitlines()
    assert (status.split()[-1], ended) == ("v4l2_read", "the stream of profile 1 has ended with -9")
