# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The kinds of mistakes. Each function makes the mutants of one place."""

from __future__ import annotations

from clang.cindex import Cursor, CursorKind, TypeKind
from source_file import Scope, SourceFile, span

STRUCTS = {
    "+": "Plus", "-": "Minus", "*": "Times", "/": "Divided", "%": "Remainder", "&": "And", "|": "Or", "^": "Exclusive",
    "<<": "Left", ">>": "Right", "<": "Less", "<=": "LessOrEqual", ">": "Greater", ">=": "GreaterOrEqual",
    "==": "Equal", "!=": "NotEqual",
}
OTHERS = {
    "+": ["-"], "-": ["+"], "*": ["/"], "/": ["*"], "%": ["*"], "&": ["|"], "|": ["&"], "^": ["&"], "<<": [">>"],
    ">>": ["<<"], "<": ["<=", ">="], "<=": ["<", ">"], ">": [">=", "<="], ">=": [">", "<"], "==": ["!="], "!=": ["=="],
}
CALLS = {"!": "negated", "-": "negative", "~": "complement"}
STEPS = {"++": ("--", 1), "--": ("++", -1)}
POINTERS = {TypeKind.POINTER, TypeKind.CONSTANTARRAY, TypeKind.INCOMPLETEARRAY, TypeKind.NULLPTR}
INTEGERS = {
    TypeKind.CHAR_U, TypeKind.UCHAR, TypeKind.USHORT, TypeKind.UINT, TypeKind.ULONG, TypeKind.ULONGLONG,
    TypeKind.CHAR_S, TypeKind.SCHAR, TypeKind.SHORT, TypeKind.INT, TypeKind.LONG, TypeKind.LONGLONG,
}
FLOATS = {TypeKind.FLOAT, TypeKind.DOUBLE}
constants: dict[str, bool] = {}  # whether a declaration is of one, which is asked often


def kind_of(cursor: Cursor) -> TypeKind:
    return cursor.type.get_canonical().kind


def bare(cursor: Cursor) -> Cursor:
    """Removes implicit conversions."""
    while cursor.kind == CursorKind.UNEXPOSED_EXPR:
        children = list(cursor.get_children())
        if len(children) != 1 or span(children[0]) != span(cursor):
            break
        cursor = children[0]
    return cursor


def parts(file: SourceFile, cursor: Cursor) -> tuple[str, str, str, int]:
    """Returns the left side, the operator and the right side of a binary expression, and where the operator is."""
    left, right = cursor.get_children()
    between = file.slice(span(left)[1], span(right)[0])
    sign = between.strip()
    return file.text(left), sign, file.text(right), span(left)[1] + between.index(sign)


def number_literal(file: SourceFile, cursor: Cursor, scope: Scope) -> None:
    text = file.text(cursor)
    digits = text.rstrip("uUlL") if cursor.kind == CursorKind.INTEGER_LITERAL else text
    suffix = text[len(digits):]
    try:
        value = int(digits, 8 if digits[:1] == "0" and digits.isdigit() else 0)
    except ValueError:
        others = [f"{text} + 1", "0"]
    else:
        others = [f"{value + 1}{suffix}", f"{value - 1}{suffix}"] + (["0"] if value not in (0, 1) else [])
    file.choose(cursor, scope, *others)


def character(file: SourceFile, cursor: Cursor, scope: Scope) -> None:
    file.choose(cursor, scope, f"{file.text(cursor)} + 1")


def boolean(file: SourceFile, cursor: Cursor, scope: Scope) -> None:
    file.choose(cursor, scope, "false" if file.text(cursor) == "true" else "true")


def named_constant(file: SourceFile, cursor: Cursor, scope: Scope) -> None:
    if is_named_constant(cursor):
        file.choose(cursor, scope, f"{file.text(cursor)} + 1", f"{file.text(cursor)} - 1")


def is_named_constant(cursor: Cursor) -> bool:
    named = cursor.referenced
    return named is not None and named.kind == CursorKind.VAR_DECL and kind_of(cursor) in INTEGERS and is_constexpr(named)


def is_constexpr(declaration: Cursor) -> bool:
    name = declaration.get_usr()
    if name not in constants:
        constants[name] = any(token.spelling == "constexpr" for token in declaration.get_tokens())
    return constants[name]


def binary(file: SourceFile, cursor: Cursor, scope: Scope) -> None:
    left, sign, right, place = parts(file, cursor)
    if sign in ("&&", "||"):
        logical(file, cursor, scope)
    elif sign in STRUCTS and has_others(cursor, sign):
        first = file.add(cursor, scope, *(f"{left} {other} {right}" for other in OTHERS[sign]))
        if first is None:
            return
        names = ", ".join(f"mutation::{STRUCTS[other]}" for other in [sign, *OTHERS[sign]])
        file.wrap(cursor, f"mutation::binary<{names}>({first}, ", ")")
        file.replaced[place] = (len(sign), ",")


def has_others(cursor: Cursor, sign: str) -> bool:
    """A pointer minus a pointer, and a number plus a pointer, have no other operation."""
    if sign not in "+-":
        return True
    return TypeKind.DEPENDENT not in map(kind_of, cursor.get_children()) and kind_of(list(cursor.get_children())[1]) not in POINTERS


def logical(file: SourceFile, cursor: Cursor, scope: Scope) -> None:
    left, sign, right, place = parts(file, cursor)
    other, forced = ("||", "true") if sign == "&&" else ("&&", "false")
    first = file.add(cursor, scope, f"{left} {other} {right}")
    if first is not None:  # a || b is !(!a && !b)
        file.wrap(cursor, f"mutation::flip({first}, mutation::flip({first}, ", "))")
        file.replaced[place] = (2, f") {sign} mutation::flip({first}, ")
    for operand in map(bare, cursor.get_children()):
        if operand.kind != CursorKind.BINARY_OPERATOR or parts(file, operand)[1] != sign:
            condition(file, operand, scope, forced)


def condition(file: SourceFile, cursor: Cursor, scope: Scope, *forced: str) -> None:
    """Is taken as true or as false."""
    if bare(cursor).kind == CursorKind.CXX_BOOL_LITERAL_EXPR:
        return
    first = file.add(cursor, scope, *forced)
    if first is not None:
        file.wrap(cursor, f"mutation::test({first}, ", f", {{{', '.join(forced)}}})")


def assignment(file: SourceFile, cursor: Cursor, scope: Scope) -> None:
    left, sign, right, place = parts(file, cursor)
    other = OTHERS.get(sign[:-1], [""])[0]
    if not other:
        return
    first = file.add(cursor, scope, f"{left} {other}= {right}")
    if first is not None:
        file.wrap(cursor, f"mutation::assign<mutation::{STRUCTS[sign[:-1]]}, mutation::{STRUCTS[other]}>({first}, ", ")")
        file.replaced[place] = (len(sign), ",")


def unary(file: SourceFile, cursor: Cursor, scope: Scope) -> None:
    operand = next(iter(cursor.get_children()))
    (start, end), (first, last) = span(cursor), span(operand)
    before, after = file.slice(start, first).strip(), file.slice(last, end).strip()
    text = file.text(operand)
    if before in CALLS:
        number = file.add(cursor, scope, text)
        if number is not None:
            file.wrap(cursor, f"mutation::{CALLS[before]}({number}, ", ")")
            file.replaced[start] = (1, "")
    elif before + after in STEPS:
        other, by = STEPS[before + after]
        number = file.add(cursor, scope, other + text if before else text + other)
        if number is not None:
            file.wrap(cursor, f"mutation::step{'After' if after else ''}({number}, ", f", {by})")
            file.replaced[start if before else last] = (2, "")


def statement(file: SourceFile, cursor: Cursor, scope: Scope) -> None:
    """Is left out."""
    first = file.add(cursor, scope, "")
    if first is not None:
        file.wrap(cursor, f"(mutation::on({first}) ? static_cast<void>(0) : static_cast<void>(", "))")


def jump(file: SourceFile, cursor: Cursor, scope: Scope) -> None:
    """A break or continue is left out, and takes the place of the other."""
    start, end = span(cursor)
    word = file.text(cursor)
    other = "continue" if word == "break" else "break"
    others = ["", other] if scope.in_loop else [""]
    first = file.add(cursor, scope, *others)
    if first is not None:
        swapped = f"if (mutation::on({first + 1})) {other}; " if scope.in_loop else ""
        semicolon = file.source.index(b";", end) + 1
        file.replaced[start] = (semicolon - start, f"{{ {swapped}if (!mutation::on({first})) {word}; }}")


def returned(file: SourceFile, cursor: Cursor, scope: Scope) -> None:
    kind, value = kind_of(cursor), bare(cursor)
    if kind == TypeKind.BOOL:
        condition(file, cursor, scope, "true", "false")
    elif kind in INTEGERS | FLOATS | {TypeKind.POINTER, TypeKind.ENUM} and not is_constant(value) and not is_zero(value):
        others = ["0", f"{file.text(cursor)} + 1"] if kind in INTEGERS | FLOATS else ["{}"]
        first = file.add(cursor, scope, *others)
        if first is not None:
            file.wrap(cursor, f"mutation::result({first}, ", ")")


def is_constant(cursor: Cursor) -> bool:
    """Constants have their own mutants."""
    if cursor.kind == CursorKind.UNARY_OPERATOR:
        return is_constant(bare(next(iter(cursor.get_children()))))
    return "_LITERAL" in cursor.kind.name or (cursor.kind == CursorKind.DECL_REF_EXPR and is_named_constant(cursor))


def is_zero(cursor: Cursor) -> bool:
    """The constant of an enumeration that its other result is."""
    named = cursor.referenced
    return named is not None and named.kind == CursorKind.ENUM_CONSTANT_DECL and named.enum_value == 0


OPERATORS = {
    CursorKind.INTEGER_LITERAL: number_literal,
    CursorKind.FLOATING_LITERAL: number_literal,
    CursorKind.CHARACTER_LITERAL: character,
    CursorKind.CXX_BOOL_LITERAL_EXPR: boolean,
    CursorKind.DECL_REF_EXPR: named_constant,
    CursorKind.BINARY_OPERATOR: binary,
    CursorKind.COMPOUND_ASSIGNMENT_OPERATOR: assignment,
    CursorKind.UNARY_OPERATOR: unary,
    CursorKind.BREAK_STMT: jump,
    CursorKind.CONTINUE_STMT: jump,
}
