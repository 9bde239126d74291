"""The share page as a viewer sees it: in a browser."""

from __future__ import annotations

import subprocess
from collections.abc import Callable, Iterator
from typing import TypeVar

import pytest
from conftest import ORIGIN, STREAM, share, store
from selenium.webdriver import Chrome, ChromeOptions
from selenium.webdriver.chrome.service import Service
from selenium.webdriver.common.by import By
from selenium.webdriver.support.wait import WebDriverWait

# Debian's start script looks at the processor file, which is the sandboxed host's.
BROWSER = "/usr/lib/chromium/chromium"
DRIVER = "/usr/bin/chromedriver"
OPTIONS = ("--headless=new", "--no-sandbox", "--disable-gpu", "--disable-dev-shm-usage")
PLAYLIST = STREAM / "playlist.m3u8"
UNKNOWN = "This link is unknown; it was renewed or taken back."

pytestmark = pytest.mark.usefixtures("page", "stream")
Result = TypeVar("Result")


class Viewer:
    """Somebody who opens links and looks at the page."""

    def __init__(self, browser: Chrome) -> None:
        self._browser = browser

    def open(self, address: str) -> None:
        self._browser.get("about:blank")
        self._browser.get(ORIGIN + address)

    def position(self) -> float:
        """Where in the stream the picture is."""
        return self._browser.execute_script("return document.getElementById('video').currentTime")

    def sees_video(self) -> bool:
        return self._browser.find_element(By.ID, "video").is_displayed()

    def sentence(self) -> str:
        return self._browser.find_element(By.ID, "sentence").text

    def await_playing(self) -> None:
        self._wait(self.sees_video)
        begin = self._wait(self.position)
        self._wait(lambda: self.position() > begin)

    def await_sentence(self, awaited: str) -> None:
        self._wait(lambda: self.sentence() == awaited)

    def enter_password(self, password: str) -> None:
        field = self._browser.find_element(By.ID, "password")
        field.clear()
        field.send_keys(password)
        field.submit()

    def _wait(self, condition: Callable[[], Result]) -> Result:
        return WebDriverWait(self._browser, timeout=20, poll_frequency=0.05).until(lambda _: condition())


@pytest.fixture(scope="module")
def stream() -> None:
    """A live stream of which twelve seconds are there."""
    picture = ["-f", "lavfi", "-i", "testsrc=size=160x120:rate=10:duration=12", "-pix_fmt", "yuv420p"]
    encoding = ["-c:v", "libx264", "-preset", "ultrafast", "-g", "10"]
    output = ["-f", "hls", "-hls_time", "1", "-hls_list_size", "0", "-hls_flags", "omit_endlist", str(PLAYLIST)]
    subprocess.run(["ffmpeg", "-nostdin", "-loglevel", "error", *picture, *encoding, *output], check=True)


@pytest.fixture(scope="module")
def viewer() -> Iterator[Viewer]:
    options = ChromeOptions()
    options.binary_location = BROWSER
    for option in OPTIONS:
        options.add_argument(option)
    browser = Chrome(service=Service(DRIVER), options=options)
    yield Viewer(browser)
    browser.quit()


@pytest.fixture
def address() -> str:
    """The share link of a camera."""
    store(profilename="Door")
    return share("on", "0", "--json")["page"]


def test_the_stream_plays(viewer: Viewer, address: str) -> None:
    viewer.open(address)
    viewer.await_playing()
    assert viewer.sentence() == ""


def test_a_wrong_token_plays_nothing(viewer: Viewer, address: str) -> None:
    viewer.open(address[:-1] + ("0" if address[-1] != "0" else "1"))
    viewer.await_sentence("This link is no longer valid; ask for the new one.")
    assert (viewer.sees_video(), viewer.position()) == (False, 0)


def test_a_renewed_link_ends_the_old_one_and_who_watches_it(viewer: Viewer, address: str) -> None:
    viewer.open(address)
    viewer.await_playing()
    renewed = share("renew", "0", "--json")["page"]
    viewer.await_sentence(UNKNOWN)
    assert not viewer.sees_video()
    viewer.open(address)
    viewer.await_sentence(UNKNOWN)
    viewer.open(renewed)
    viewer.await_playing()


def test_a_link_taken_back_ends_for_who_watches_it(viewer: Viewer, address: str) -> None:
    viewer.open(address)
    viewer.await_playing()
    share("off", "0")
    viewer.await_sentence(UNKNOWN)
    assert not viewer.sees_video()


def test_a_camera_that_is_pulled_is_told_of(viewer: Viewer, address: str) -> None:
    """Its stream stands still then, and its link is still there."""
    viewer.open(address)
    viewer.await_playing()
    link = share("show", "0", "--json")
    store(**{"sharelink.shrenable": 1, "sharelink.ssid": link["ssid"], "sharelink.token": link["token"]}, exists=0)
    viewer.await_sentence("The camera is not plugged in.")
    assert not viewer.sees_video()


def test_a_password_opens_a_protected_link(viewer: Viewer, address: str) -> None:
    protected = share("on", "0", "--password-stdin", "--json", password="pass\n")["page"]
    viewer.open(protected)
    viewer.await_sentence("This link is protected by a password.")
    viewer.enter_password("Pass")
    viewer.await_sentence("This is not the password.")
    assert not viewer.sees_video()
    viewer.enter_password("pass")
    viewer.await_playing()


def test_a_stream_that_begins_later_is_waited_for(viewer: Viewer, address: str) -> None:
    later = PLAYLIST.rename(PLAYLIST.with_suffix(".later"))
    viewer.open(address)
    viewer.await_sentence("The stream is not there yet; it is shown as soon as it is.")
    later.rename(PLAYLIST)
    viewer.await_playing()
