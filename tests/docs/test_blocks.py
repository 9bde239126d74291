# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Every command line and every code block of the documents does what its document states."""

from __future__ import annotations

import json
import re
import subprocess
import tomllib
import xml.etree.ElementTree as ElementTree
from pathlib import Path

import pytest
from blocks import LANGUAGES, Block, Command, blocks_of, commands_of, documents
from conftest import BUILD, REPOSITORY
from host_script import RUN_PYTHON, Host, agrees, started_host
from rules import CI, RUN_BY, run_by
from sources import compile_block

DATA = {"toml": tomllib.loads, "json": json.loads, "xml": ElementTree.fromstring}
ALL = [block for document in documents() for block in blocks_of(document)]
# A document may leave a block without a test, with a reason; more than these, and the documents are not tested.
MOST_NOT_RUN = 6


@pytest.fixture(scope="module")
def prefix(tmp_path_factory: pytest.TempPathFactory) -> Path:
    """Where the library is installed; in the build folder, which sandboxed hosts see."""
    folder = BUILD / "installed"
    subprocess.run(["cmake", "--install", BUILD, "--prefix", folder], check=True, capture_output=True)
    return folder


def hosts_of(document: Path) -> list[Host]:
    """The hosts that a document opens, with its commands on them. What a rule names runs elsewhere."""
    hosts = [Host()]
    for block in blocks_of(document):
        if block.reason:
            continue
        if block.before:
            hosts[-1].steps.append(f"{{ {block.before}\n}} >/dev/null 2>&1 </dev/null")
        if block.language == "c" and (name := re.match(r"/\* (\w+\.c) \*/", block.text)):
            hosts[-1].add_file(name[1], block.text)
        if block.language == "python":
            hosts[-1].add_file("block.py", block.text)
            hosts[-1].steps.append(Command(block.place, RUN_PYTHON))
        for command in commands_of(block) if block.language in ("sh", "console") else []:
            if (options := started_host(command.text)) is not None:
                hosts.append(Host(options))
            elif run_by(command.text) is None:
                hosts[-1].steps.append(command)
    return [host for host in hosts if any(isinstance(step, Command) for step in host.steps)]


FOLLOWED = [document for document in documents() if hosts_of(document)]


def test_every_block_names_its_language() -> None:
    assert [block.place for block in ALL if block.language not in LANGUAGES] == []


def test_few_blocks_are_not_run_and_each_has_a_reason() -> None:
    untested = [block for block in ALL if block.reason or block.language == "text"]
    assert [block.place for block in untested if not block.reason] == []
    assert len(untested) <= MOST_NOT_RUN


@pytest.mark.parametrize("document", FOLLOWED, ids=lambda path: str(path.relative_to(REPOSITORY)))
def test_who_follows_a_document_sees_what_it_shows(document: Path, prefix: Path) -> None:
    wrong = []
    for host in hosts_of(document):
        results = host.run(prefix)
        assert len(results) == sum(isinstance(step, Command) for step in host.steps)
        for result in results:
            shown = result.command.printed
            if (shown and not agrees(shown, result.printed)) or (not shown and result.status != 0):
                wrong.append(f"{result.command.place}: {result.command.text} ({result.status})\n" + "\n".join(result.printed))
    assert not wrong, "\n\n".join(wrong)


@pytest.mark.parametrize("block", [one for one in ALL if one.language in ("c", "cpp", "cmake")], ids=lambda one: one.place)
def test_a_source_in_a_document_compiles(block: Block, prefix: Path, tmp_path: Path) -> None:
    done = compile_block(block, prefix, tmp_path)
    assert done.returncode == 0, done.stdout + done.stderr


@pytest.mark.parametrize("block", [one for one in ALL if one.language in DATA], ids=lambda one: one.place)
def test_data_in_a_document_can_be_read(block: Block) -> None:
    DATA[block.language](block.text)


@pytest.mark.parametrize("block", [one for one in ALL if one.language == "usage"], ids=lambda one: one.place)
def test_a_usage_names_the_options_that_the_help_has(block: Block) -> None:
    for line in block.text.splitlines():
        words = [word for word in line.split() if re.fullmatch(r"[a-z]+", word)]
        if words == ["usbdevctl"]:
            continue  # the program itself
        text = subprocess.run([BUILD / words[0], *words[1:], "--help"], capture_output=True, text=True, check=True).stdout
        known = set(re.findall(r"^  (?:-\w,)?(--[\w-]+)", text, re.MULTILINE)) - {"--help"}
        assert set(re.findall(r"--[\w-]+", line)) == known, line


def test_a_command_that_is_not_run_here_is_run_by_a_test_that_exists() -> None:
    listing = subprocess.run(["ctest", "--test-dir", BUILD, "--show-only"], capture_output=True, text=True, check=True).stdout
    tests = set(re.findall(r"Test +#\d+: (\S+)", listing)) | {CI}
    assert {test for _, test in RUN_BY} - tests == set()
    called = set(re.findall(r"\./dev (\w+)", (REPOSITORY / ".ci/run").read_text()))
    assert called >= {"setup", "bench", "check", "test"}


def test_every_command_of_dev_that_a_document_names_exists() -> None:
    known = subprocess.run([REPOSITORY / "dev", "help"], capture_output=True, text=True, check=True).stdout
    commands = set(re.findall(r"^  (\w+)", known, re.MULTILINE))
    named = {word for document in documents() for word in re.findall(r"\./dev (?:--yes )?([a-z]\w+)", document.read_text())}
    assert named - commands == set()
