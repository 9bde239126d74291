# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Goes through a parsed source file and makes the mutants of each place that runs."""

from __future__ import annotations

import re
from collections.abc import Iterable

from clang.cindex import Cursor, CursorKind
from operators import OPERATORS, bare, condition, returned, statement
from source_file import Scope, SourceFile, span

FUNCTIONS = {
    CursorKind.FUNCTION_DECL, CursorKind.CXX_METHOD, CursorKind.CONSTRUCTOR, CursorKind.DESTRUCTOR,
    CursorKind.CONVERSION_FUNCTION, CursorKind.FUNCTION_TEMPLATE,
}
DECLARATORS = {CursorKind.VAR_DECL, CursorKind.FIELD_DECL, CursorKind.PARM_DECL}
LOOPS = {CursorKind.WHILE_STMT, CursorKind.DO_STMT, CursorKind.FOR_STMT, CursorKind.CXX_FOR_RANGE_STMT}
# Literals, so that nothing is found inside them, and what a loop's head is divided by.
SEMICOLONS = re.compile(rb"'(?:\\.|[^'])*'|\"(?:\\.|[^\"])*\"|[()\[\]{};]")
# What the compiler computes, or looks at without running it.
NOT_RUN = {
    CursorKind.STATIC_ASSERT, CursorKind.ENUM_DECL, CursorKind.TYPE_ALIAS_DECL, CursorKind.TYPEDEF_DECL, CursorKind.CXX_UNARY_EXPR,
    CursorKind.SIZE_OF_PACK_EXPR,
}


def walk(file: SourceFile, cursor: Cursor, scope: Scope) -> None:
    children = [child for child in cursor.get_children() if lies_within(child, cursor)]
    scope = scope_inside(file, cursor, scope)
    for child in conditions(file, cursor, children):
        condition(file, child, scope, "true", "false")
    if cursor.kind == CursorKind.RETURN_STMT and children:
        returned(file, children[0], scope)
    if cursor.kind in OPERATORS:
        OPERATORS[cursor.kind](file, cursor, scope)
    for child in children:
        if is_statement(file, cursor, child, children):
            statement(file, child, scope)
        if not is_part_of_type(file, cursor, child):
            visit(file, child, scope)


def visit(file: SourceFile, cursor: Cursor, scope: Scope) -> None:
    """Leaves out what a macro makes, and what was found before: in a class and in what the compiler makes of it."""
    if cursor.kind in NOT_RUN:
        return
    if file.in_macro(*span(cursor)):
        file.skipped += 1
        return
    key = (*span(cursor), str(cursor.kind))
    if cursor.kind == CursorKind.UNEXPOSED_EXPR or key not in file.seen:  # one conversion may follow another
        file.seen.add(key)
        walk(file, cursor, scope)


def lies_within(child: Cursor, parent: Cursor) -> bool:
    (start, end), (first, last) = span(child), span(parent)
    same_file = str(child.extent.start.file) == str(parent.extent.start.file)
    return same_file and first <= start < end <= last


def scope_inside(file: SourceFile, cursor: Cursor, scope: Scope) -> Scope:
    if cursor.kind in FUNCTIONS:
        scope = scope._replace(function=cursor.spelling.partition("<")[0], in_loop=False)
    if cursor.kind in FUNCTIONS | DECLARATORS and "constexpr" in file.slice(span(cursor)[0], cursor.location.offset).split():
        scope = scope._replace(compile_time=True)
    if cursor.kind == CursorKind.IF_STMT and file.text(cursor).startswith("if constexpr"):
        scope = scope._replace(compile_time=True)
    if cursor.kind in LOOPS or cursor.kind == CursorKind.SWITCH_STMT:
        scope = scope._replace(in_loop=cursor.kind in LOOPS)
    return scope


def conditions(file: SourceFile, cursor: Cursor, children: list[Cursor]) -> Iterable[Cursor]:
    """A declaration as a condition is left as it is."""
    if cursor.kind == CursorKind.FOR_STMT:
        first, second = semicolons(file, cursor)
        return [child for child in children if first < span(child)[0] < second]
    if cursor.kind == CursorKind.DO_STMT:
        return children[1:]
    if cursor.kind in {CursorKind.IF_STMT, CursorKind.WHILE_STMT, CursorKind.CONDITIONAL_OPERATOR}:
        return [child for child in children[:1] if child.kind.is_expression()]
    return []


def semicolons(file: SourceFile, loop: Cursor) -> list[int]:
    """Returns where the two semicolons in a loop's head are."""
    depth, found = 0, []
    for match in SEMICOLONS.finditer(file.source, *span(loop)):
        depth += (match[0] in b"([{") - (match[0] in b")]}")
        if match[0] == b";" and depth == 1:
            found.append(match.start())
    return found[:2]


def is_statement(file: SourceFile, parent: Cursor, child: Cursor, children: list[Cursor]) -> bool:
    if not child.kind.is_expression() or file.source[span(child)[1]:].lstrip()[:1] != b";":
        return False
    if parent.kind == CursorKind.COMPOUND_STMT:
        return True
    if parent.kind == CursorKind.IF_STMT:
        return child != children[0]
    return parent.kind in LOOPS and parent.kind != CursorKind.DO_STMT and child == children[-1]


def is_part_of_type(file: SourceFile, parent: Cursor, child: Cursor) -> bool:
    """The number of elements of an array, an argument of a template, the value of a case."""
    start, end = span(child)
    if parent.kind in DECLARATORS:
        return start < parent.location.offset or file.source[:start].rstrip()[-1:] == b"["
    if parent.kind == CursorKind.CASE_STMT:
        return child == next(iter(parent.get_children()))
    if parent.kind in {CursorKind.DECL_REF_EXPR, CursorKind.MEMBER_REF_EXPR}:
        return start != span(parent)[0]
    return False
