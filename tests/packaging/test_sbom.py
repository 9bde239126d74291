# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The bill of materials of small packages that the test makes: it is valid SPDX, and says what is in them."""

from __future__ import annotations

import hashlib
import json
import os
import re
import subprocess
from pathlib import Path
from typing import Any

import pytest
from conftest import REPOSITORY, VERSION
from license_expression import get_spdx_licensing

HERE = subprocess.run(["dpkg", "--print-architecture"], check=True, capture_output=True, text=True).stdout.strip()
PACKAGES = {
    ("libusbdevlib1", HERE): ("libc6 (>= 2.34)", []),
    ("usbdevctl", HERE): ("libc6 (>= 2.34), libsqlite3-0 (>= 3.7) | other, libusbdevlib1 (= 1)", []),
    ("usbdev-host", HERE): ("python3:any, no-such-package, usbdevctl (= 1)", ["preact.js"]),
    ("python3-usbdev", "all"): ("libusbdevlib1", []),
}
RELATIONS = {"DESCRIBES", "GENERATED_FROM", "DEPENDS_ON", "STATIC_LINK", "CONTAINS"}
DIGITS = {"SHA256": 64, "SHA512": 128}


def build(folder: Path, name: str, architecture: str, depends: str, files: list[str]) -> None:
    tree = folder / name
    (tree / "DEBIAN").mkdir(parents=True)
    (tree / "DEBIAN/control").write_text(
        f"Package: {name}\nVersion: {VERSION}-1\nArchitecture: {architecture}\nMaintainer: Ann <ann@example.org>\n"
        f"Depends: {depends}\nDescription: a package\n")
    for file in files:
        (tree / file).touch()
    subprocess.run(["dpkg-deb", "--build", tree, folder / f"{name}_{VERSION}-1_{architecture}.deb"], check=True,
                   stdout=subprocess.DEVNULL)


def bill_of(folder: Path) -> bytes:
    subprocess.run([REPOSITORY / "packaging/sbom", folder], check=True,
                   env=os.environ | {"SOURCE_DATE_EPOCH": "1795000000"})
    return (folder / f"libusbdevlib-{VERSION}.spdx.json").read_bytes()


@pytest.fixture(scope="module")
def folder(tmp_path_factory: pytest.TempPathFactory) -> Path:
    made = tmp_path_factory.mktemp("packages")
    for (name, architecture), (depends, files) in PACKAGES.items():
        build(made, name, architecture, depends, files)
    return made


@pytest.fixture(scope="module")
def bill(folder: Path) -> dict[str, Any]:
    return json.loads(bill_of(folder))


def related(bill: dict[str, Any], element: str, how: str) -> set[str]:
    return {relation["relatedSpdxElement"] for relation in bill["relationships"]
            if (relation["spdxElementId"], relation["relationshipType"]) == (element, how)}


def package(bill: dict[str, Any], reference: str) -> dict[str, Any]:
    return next(one for one in bill["packages"] if one["SPDXID"] == reference)


def test_the_document_has_what_the_standard_asks_for(bill: dict[str, Any]) -> None:
    assert (bill["spdxVersion"], bill["dataLicense"], bill["SPDXID"]) == ("SPDX-2.3", "CC0-1.0", "SPDXRef-DOCUMENT")
    assert bill["name"] == f"libusbdevlib-{VERSION}"
    assert re.fullmatch(r"urn:uuid:[0-9a-f-]{36}", bill["documentNamespace"])
    assert bill["creationInfo"]["created"] == "2026-11-18T11:06:40Z"
    assert all(re.match(r"(Organization|Tool): \S", creator) for creator in bill["creationInfo"]["creators"])


def test_every_package_has_what_the_standard_asks_for(bill: dict[str, Any]) -> None:
    licensing = get_spdx_licensing()
    for one in bill["packages"]:
        assert re.fullmatch(r"SPDXRef-[A-Za-z0-9.-]+", one["SPDXID"]) and one["name"]
        assert one["downloadLocation"] == "NOASSERTION" and one["filesAnalyzed"] is False and one["copyrightText"]
        for licence in {one["licenseConcluded"], one["licenseDeclared"]} - {"NOASSERTION"}:
            assert not licensing.validate(licence).errors
        for checksum in one.get("checksums", []):
            assert re.fullmatch(f"[0-9a-f]{{{DIGITS[checksum['algorithm']]}}}", checksum["checksumValue"])
        for reference in one.get("externalRefs", []):
            assert re.fullmatch(r"pkg:(deb/debian|npm)/[^@?]+(@[\w.:%~-]+)?(\?arch=\w+)?", reference["referenceLocator"])


def test_every_relation_is_between_things_that_it_lists(bill: dict[str, Any]) -> None:
    names = [one["SPDXID"] for one in bill["packages"]]
    assert len(names) == len(set(names))
    ends = {relation[end] for relation in bill["relationships"] for end in ("spdxElementId", "relatedSpdxElement")}
    assert ends == {*names, "SPDXRef-DOCUMENT"}
    assert {relation["relationshipType"] for relation in bill["relationships"]} == RELATIONS


def test_it_describes_the_packages_with_their_checksums(bill: dict[str, Any], folder: Path) -> None:
    described = [package(bill, reference) for reference in related(bill, "SPDXRef-DOCUMENT", "DESCRIBES")]
    assert {one["name"] for one in described} == {name for name, _ in PACKAGES}
    for one in described:
        digest = hashlib.sha256((folder / one["packageFileName"]).read_bytes()).hexdigest()
        assert (one["versionInfo"], one["checksums"][0]["checksumValue"]) == (f"{VERSION}-1", digest)
        assert related(bill, one["SPDXID"], "GENERATED_FROM") == {"SPDXRef-libusbdevlib"}
    assert package(bill, "SPDXRef-libusbdevlib")["versionInfo"] == VERSION


def test_a_dependency_has_the_version_that_is_installed(bill: dict[str, Any]) -> None:
    needs = related(bill, f"SPDXRef-usbdevctl-{HERE}", "DEPENDS_ON")
    assert needs == {f"SPDXRef-Debian-libc6-{HERE}", f"SPDXRef-Debian-libsqlite3-0-{HERE}", f"SPDXRef-libusbdevlib1-{HERE}"}
    query = ["dpkg-query", "-W", "-f", "${Version}", f"libc6:{HERE}"]
    version = subprocess.run(query, check=True, capture_output=True, text=True).stdout
    assert package(bill, f"SPDXRef-Debian-libc6-{HERE}")["versionInfo"] == version


def test_a_dependency_that_is_not_installed_has_no_version(bill: dict[str, Any]) -> None:
    assert "versionInfo" not in package(bill, f"SPDXRef-Debian-no-such-package-{HERE}")


def test_a_package_for_all_machines_needs_the_library_of_its_machine(bill: dict[str, Any]) -> None:
    assert related(bill, "SPDXRef-python3-usbdev-all", "DEPENDS_ON") == {f"SPDXRef-libusbdevlib1-{HERE}"}


def test_it_lists_what_is_compiled_into_a_program_and_what_is_copied_into_a_package(bill: dict[str, Any]) -> None:
    headers = related(bill, f"SPDXRef-usbdevctl-{HERE}", "STATIC_LINK")
    assert {package(bill, one)["name"] for one in headers} == {"libcli11-dev", "nlohmann-json3-dev"}
    libraries = [package(bill, one) for one in related(bill, f"SPDXRef-usbdev-host-{HERE}", "CONTAINS")]
    lock = json.loads((REPOSITORY / "host/web/package-lock.json").read_text())["packages"]
    loaded = json.loads((REPOSITORY / "host/web/package.json").read_text())["dependencies"]
    assert {one["name"]: one["versionInfo"] for one in libraries} == loaded
    assert all(lock[f"node_modules/{name}"]["version"] == version for name, version in loaded.items())
    assert related(bill, f"SPDXRef-usbdevctl-{HERE}", "CONTAINS") == set()


def test_it_is_the_same_again(bill: dict[str, Any], folder: Path) -> None:
    assert json.loads(bill_of(folder)) == bill


def test_a_folder_without_packages_is_refused(tmp_path: Path) -> None:
    done = subprocess.run([REPOSITORY / "packaging/sbom", tmp_path], capture_output=True, text=True)
    assert (done.returncode, done.stderr) == (1, f"sbom: no package in {tmp_path}\n")
