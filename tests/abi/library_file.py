#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Checks one property of the library file: library_file.py CHECK LIBRARY VERSION_SCRIPT."""

import pathlib
import re
import subprocess
import sys

HOST_LIBRARIES = {"libvlxmlcfg.so", "libvllog.so", "libalsa_ctl.so"}
HEAP_FUNCTION = re.compile(
    r"(malloc|calloc|realloc|reallocarray|free|strdup|strndup|asprintf|vasprintf|getline|getdelim|_Zn[wa].*|_Zd[la].*)$"
)

SHARED_ANSWERS = {
    "asctime", "ctime", "gethostbyaddr", "gethostbyname", "getpwnam", "getpwuid", "getservbyname", "gmtime", "inet_ntoa",
    "localtime", "readdir", "setlocale", "strerror", "strtok", "ttyname",
}


def output(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def versioned_symbols(library, kind):
    """Names in the dynamic symbol table with their versions, as nm shows them: name@@VERSION is the default one."""
    lines = output("nm", "--dynamic", f"--{kind}-only", "--portability", library).splitlines()
    symbols = (line.split() for line in lines)
    return {symbol[0] for symbol in symbols if symbol[1] != "A"}


def dynamic_symbols(library, kind):
    """The same without versions."""
    return {symbol.split("@")[0] for symbol in versioned_symbols(library, kind)}


def dynamic_entries(library, tag):
    """The texts in brackets of all entries with this tag."""
    entries = output("readelf", "--dynamic", "--wide", library)
    return re.findall(rf"\({tag}\).*\[(.*)\]", entries)


def version_nodes(version_script):
    """Each node of the version script, with the names that it exports."""
    text = re.sub(r"/\*.*?\*/", "", pathlib.Path(version_script).read_text(), flags=re.DOTALL)
    nodes = re.findall(r"^(\S+) {(.*?)^}", text, flags=re.DOTALL | re.MULTILINE)
    return {node: set(re.findall(r"(\w+);", body.split("local:")[0])) for node, body in nodes}


def listed_exports(version_script):
    return set().union(*version_nodes(version_script).values())


def expect_equal(actual, expected):
    if actual == expected:
        return
    print(f"expected {expected}\nfound    {actual}")
    if isinstance(actual, set):
        print(f"missing  {expected - actual}\nextra    {actual - expected}")
    sys.exit(1)


def check_exports(library, version_script):
    """The exported symbols are exactly those that the version script lists."""
    expect_equal(dynamic_symbols(library, "defined"), listed_exports(version_script))


def check_versions(library, version_script):
    """Each exported symbol has the version of its node, and no other."""
    listed = {f"{name}@@{node}" for node, names in version_nodes(version_script).items() for name in names}
    expect_equal(versioned_symbols(library, "defined"), listed)


def check_declarations(_, version_script):
    """The public headers declare what the version script lists, and nothing else."""
    headers = pathlib.Path(version_script).parent.parent.joinpath("include/usbdev").glob("*.h")
    code = re.sub(r"/\*.*?\*/", "", "".join(header.read_text() for header in headers), flags=re.DOTALL)
    functions = re.findall(r"^[a-z][\w ]*[ *](\w+)\(", code, flags=re.MULTILINE)
    data = re.findall(r"^extern [\w ]+[ *](\w+)(?:\[\w*\])?;", code, flags=re.MULTILINE)
    expect_equal(set(functions + data), listed_exports(version_script))


def check_soname(library, _):
    """Programs that are linked against the library ask for its major version."""
    expect_equal(dynamic_entries(library, "SONAME"), ["libusbdevlib.so.1"])


def check_needed_libraries(library, _):
    """The library needs the C library and the host libraries, and nothing else."""
    needed = {name for name in dynamic_entries(library, "NEEDED") if not re.match(r"(libc\.so|ld-linux)", name)}
    expect_equal({re.sub(r"\.so\..*", ".so", name) for name in needed}, HOST_LIBRARIES)


def check_executable_stack(library, _):
    """The library asks for a stack that is not executable."""
    segments = output("readelf", "--program-headers", "--wide", library)
    expect_equal(re.findall(r"GNU_STACK.* (R\w*) ", segments), ["RW"])


def check_relocations(library, _):
    """All relocations are done at load time and read-only afterwards."""
    expect_equal("GNU_RELRO" in output("readelf", "--program-headers", "--wide", library), True)
    flags = output("readelf", "--dynamic", "--wide", library)
    expect_equal(re.search(r"BIND_NOW|Flags:.*NOW", flags) is not None, True)


def check_guards(library, _):
    """The stack is protected, and functions of the C library that write are told how much room there is."""
    guards = {"__stack_chk_fail", "__memcpy_chk", "__snprintf_chk", "__vsnprintf_chk", "__fdelt_chk"}
    expect_equal(dynamic_symbols(library, "undefined") & guards, guards)


def check_heap(library, _):
    """The library itself never asks for heap memory."""
    imports = dynamic_symbols(library, "undefined")
    expect_equal({name for name in imports if HEAP_FUNCTION.match(name)}, set())


def check_thread_safety(library, _):
    """The library calls nothing of the C library that answers in a buffer which all threads share."""
    imports = dynamic_symbols(library, "undefined")
    expect_equal(imports & SHARED_ANSWERS, set())


if __name__ == "__main__":
    globals()["check_" + sys.argv[1]](sys.argv[2], sys.argv[3])
