# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Which mistakes are made in a source file, and what the tests are said to have found of them."""

from __future__ import annotations

import json
import os
import subprocess
import sys
import tempfile
from collections.abc import Iterator
from pathlib import Path

import pytest

TOOL = Path(__file__).resolve().parents[2] / "tools/mutation"
sys.path.insert(0, str(TOOL))

from cases import Case, Judge  # noqa: E402
from report import LEAST, LEAST_OF_SAMPLE, Verdict, report  # noqa: E402
from sample import sampled  # noqa: E402
from source_file import Mutant, SourceFile  # noqa: E402
from sources import read_sources  # noqa: E402


def read(folder: Path, code: str) -> SourceFile:
    source = folder / "code.cpp"
    source.write_text(code)
    (folder / "compile_commands.json").write_text(json.dumps([{"file": str(source), "directory": "/", "command": f"c++ -c {source}"}]))
    return read_sources(folder, folder, [folder])[0]


def mistakes(folder: Path, body: str, head: str = "int f(int a, int b, bool c, const int *p)") -> list[str]:
    """Returns the mistakes in a function, as "original -> mutated"."""
    file = read(folder, f"void call(int);\nconstexpr int kSize = 8;\n{head} {{ {body} }}\n")
    return [f"{mutant.original} -> {mutant.mutated}" for mutant in file.mutants]


@pytest.mark.parametrize(
    ("expression", "others"),
    [
        ("a + b", ["a - b"]), ("a - b", ["a + b"]), ("a * b", ["a / b"]), ("a / b", ["a * b"]), ("a % b", ["a * b"]),
        ("a & b", ["a | b"]), ("a | b", ["a & b"]), ("a ^ b", ["a & b"]), ("a << b", ["a >> b"]), ("a >> b", ["a << b"]),
        ("a < b", ["a <= b", "a >= b"]), ("a <= b", ["a < b", "a > b"]), ("a > b", ["a >= b", "a <= b"]),
        ("a >= b", ["a > b", "a < b"]), ("a == b", ["a != b"]), ("a != b", ["a == b"]), ("-a", ["a"]), ("~a", ["a"]),
        ("kSize", ["kSize + 1", "kSize - 1"]), ("7", ["8", "6", "0"]), ("0", ["1", "-1"]), ("1", ["2", "0"]), ("'x'", ["'x' + 1"]),
    ],
)
def test_an_expression_has_another_operator_or_constant(tmp_path: Path, expression: str, others: list[str]) -> None:
    assert mistakes(tmp_path, f"auto x = {expression}; return x;")[:len(others)] == [f"{expression} -> {other}" for other in others]


@pytest.mark.parametrize(
    ("body", "expected"),
    [
        ("if (c) call(a);", ["c -> true", "c -> false", "call(a) -> "]),
        ("while (c) ++a;", ["c -> true", "c -> false", "++a -> ", "++a -> --a"]),
        ("for (; c; a--) {}", ["c -> true", "c -> false", "a-- -> a++"]),
        ("bool x = c && !p;", ["c && !p -> c || !p", "c -> true", "!p -> true", "!p -> p"]),
        ("bool x = c || a;", ["c || a -> c && a", "c -> false", "a -> false"]),
        ("a += b;", ["a += b -> ", "a += b -> a -= b"]),
        ("bool x = true;", ["true -> false"]),
        ("while (p) break;", ["p -> true", "p -> false", "break -> ", "break -> continue"]),
        ("switch (a) { case 7: break; }", ["break -> "]),
    ],
)
def test_a_statement_has_its_mistakes(tmp_path: Path, body: str, expected: list[str]) -> None:
    assert mistakes(tmp_path, body, head="void f(int a, int b, bool c, const int *p)") == expected


@pytest.mark.parametrize(
    ("kind", "value", "others"),
    [("int", "call()", ["0", "call() + 1"]), ("bool", "call()", ["true", "false"]), ("const char *", "call()", ["{}"])],
)
def test_a_result_is_replaced(tmp_path: Path, kind: str, value: str, others: list[str]) -> None:
    file = read(tmp_path, f"{kind} call();\n{kind} f() {{ return {value}; }}\n")
    assert [mutant.mutated for mutant in file.mutants] == others


def test_what_the_compiler_computes_is_counted_only(tmp_path: Path) -> None:
    file = read(tmp_path, "constexpr int kSize = 4 + 4;\nstatic_assert(kSize == 8);\nenum Kind { first = 3 };\nchar room[kSize];\n")
    assert file.mutants == [] and file.skipped > 0


PROGRAM = """\
#include <cstdlib>
int rest(int number, int divisor) {
  if (divisor < 1) divisor = 1;
  while (number >= divisor) number -= divisor;
  return number;
}
int main() { return rest(7, 3) == 1 ? 0 : 1; }
"""


class Judged:
    """The program above, with its mutants; its only test case is to end with status 0."""

    def __init__(self, folder: Path) -> None:
        file = read(folder, PROGRAM)
        self.mutants = file.mutants
        (folder / "mutated.cpp").write_text(file.mutated_text())
        program = folder / "build/unit_rest"
        program.parent.mkdir()
        subprocess.run(["c++", "-w", "-include", TOOL / "mutants.h", "-o", program, folder / "mutated.cpp"], check=True)
        self.judge = Judge(folder, program.parent, patience=1)
        self.case = Case(str(program), "Rest.IsSmaller")
        self.passes = self.judge.record(self.case, len(file.mutants))

    def verdict(self, original: str, mutated: str) -> str:
        number, = (mutant.number for mutant in self.mutants
                   if (mutant.function, mutant.original, mutant.mutated) == ("rest", original, mutated))
        return self.judge.judge(number, [self.case] if number in self.case.noticed else [])


@pytest.fixture(scope="module")
def judged() -> Iterator[Judged]:
    """Not in /tmp, in place of which a test program sees an empty folder."""
    with tempfile.TemporaryDirectory(dir=os.environ.get("USBDEV_BUILD_DIR", TOOL)) as folder:
        yield Judged(Path(folder))


def test_without_a_mutant_the_program_is_the_same(judged: Judged) -> None:
    assert judged.passes


@pytest.mark.parametrize(
    ("original", "mutated", "verdict"),
    [
        ("number >= divisor", "false", "killed"),
        ("number -= divisor", "", "hangs"),
        ("divisor = 1", "", "unnoticed"),
        ("divisor < 1", "divisor <= 1", "unnoticed"),
        ("number >= divisor", "number > divisor", "unnoticed"),
    ],
)
def test_a_mutant_is_judged_by_the_cases_that_notice_it(judged: Judged, original: str, mutated: str, verdict: str) -> None:
    assert judged.verdict(original, mutated) == verdict


def test_a_mutant_that_no_case_minds_survives(judged: Judged) -> None:
    careless = Case("/bin/true", "Nothing.IsTested")
    assert judged.judge.judge(1, [careless]) == "survived"


@pytest.mark.parametrize(
    ("whole_suites", "names"), [(False, ["Text.IsCut", "Text.IsKept", "All/Port.IsOff/1"]), (True, ["Text.*", "All/Port.*"])]
)
def test_a_sample_is_judged_by_whole_suites(tmp_path: Path, whole_suites: bool, names: list[str]) -> None:
    program = tmp_path / "contract_text"
    program.touch(0o755)
    cases = ("Text.IsCut", "Text.IsKept", "All/Port.IsOff/1")
    tests = (f"add_test({number} {program} --gtest_filter={case})\n" for number, case in enumerate(cases))
    (tmp_path / "CTestTestfile.cmake").write_text("".join(tests))
    assert [case.name for case in Judge(tmp_path, tmp_path).cases(whole_suites)] == names


@pytest.mark.parametrize(("least", "killed", "status"), [(LEAST, 95, 0), (LEAST, 94, 1), (LEAST_OF_SAMPLE, 90, 0), (LEAST_OF_SAMPLE, 89, 1)])
def test_95_of_100_have_to_be_killed_and_90_of_a_sample(
    tmp_path: Path, capsys: pytest.CaptureFixture[str], least: int, killed: int, status: int) -> None:
    verdicts = [Verdict(Mutant(n, "src/core/a.cpp", n, "f", "a", "b"), "killed" if n < killed else "survived") for n in range(100)]
    assert report(verdicts, 3, tmp_path / "survivors", least) == status
    assert f"100 mutants, {killed} killed" in capsys.readouterr().out
    assert len((tmp_path / "survivors").read_text().splitlines()) == 100 - killed


def test_a_sample_is_the_same_each_time_unless_another_seed_is_given(monkeypatch: pytest.MonkeyPatch) -> None:
    mutants = [Mutant(n, "src/core/a.cpp", n, "f", "a", "b") for n in range(1000)]
    monkeypatch.delenv("USBDEV_SEED", raising=False)
    chosen = sampled(mutants, 20)
    assert len(set(chosen)) == 20 and chosen == sampled(mutants, 20)
    monkeypatch.setenv("USBDEV_SEED", "2")
    assert chosen != sampled(mutants, 20)


def test_a_sample_is_of_all_where_there_are_fewer(capsys: pytest.CaptureFixture[str]) -> None:
    mutants = [Mutant(n, "src/core/a.cpp", n, "f", "a", "b") for n in range(3)]
    assert sorted(sampled(mutants, 20)) == mutants
    assert capsys.readouterr().out == "3 of 3 mutants, chosen with USBDEV_SEED=1\n"
