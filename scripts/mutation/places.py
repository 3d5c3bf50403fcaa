"""Finds the places of a C++ source where a fault can be planted, and plants them."""

import re
import shlex
from dataclasses import dataclass

from clang.cindex import CursorKind as Kind
from clang.cindex import Index, TypeKind

FUNCTIONS = {Kind.FUNCTION_DECL, Kind.CXX_METHOD, Kind.CONSTRUCTOR, Kind.DESTRUCTOR,
             Kind.FUNCTION_TEMPLATE, Kind.CONVERSION_FUNCTION}
STATEMENTS = {Kind.CALL_EXPR, Kind.BINARY_OPERATOR, Kind.COMPOUND_ASSIGNMENT_OPERATOR,
              Kind.UNARY_OPERATOR}
NUMBER = "\0"
NUMBERS = {TypeKind.INT, TypeKind.UINT, TypeKind.LONG, TypeKind.ULONG, TypeKind.LONGLONG,
           TypeKind.ULONGLONG, TypeKind.FLOAT, TypeKind.DOUBLE}
# What only a developer reads, what checks itself, and what only saves time.
NOT_WORTH = re.compile(r"(print|assert\w*|g_warning|g_message|\S*[.>]reserve)\(")


@dataclass
class Place:
    """What stands instead of the source's characters from begin to end: texts, in which NUMBER is
    the fault's, and ranges (begin, end) of the source, in which other faults may lie."""
    file: str
    begin: int
    end: int
    line: int
    what: str
    pieces: tuple


class Finder:
    def __init__(self, file, path, arguments):
        self.file = file
        self.source = open(path, "rb").read()
        self.path = path
        self.places = {}
        unit = Index.create().parse(path, arguments)
        for cursor in unit.cursor.get_children():
            self.declaration(cursor)

    def declaration(self, cursor):
        if not cursor.location.file or cursor.location.file.name != self.path:
            return
        if cursor.kind in FUNCTIONS:
            for child in cursor.get_children():
                if child.kind not in (Kind.PARM_DECL, Kind.TYPE_REF, Kind.NAMESPACE_REF):
                    self.visit(child, "")
        else:
            for child in cursor.get_children():
                self.declaration(child)

    def range(self, cursor):
        return cursor.extent.start.offset, cursor.extent.end.offset

    def said(self, begin, end):
        return " ".join(self.source[begin:end].decode(errors="replace").split())

    def add(self, begin, end, what, *pieces):
        if begin < end:
            what = what if len(what) < 100 else what[:97] + "..."
            line = self.source.count(b"\n", 0, begin) + 1
            self.places[begin, end, what] = Place(self.file, begin, end, line, what, pieces)

    def around(self, cursor, what, before, after="))"):
        place = self.range(cursor)
        self.add(*place, what + self.said(*place), before, place, after)

    def turned(self, cursor):
        self.around(cursor, "turned: ", f"(zuviFault({NUMBER}) != static_cast<bool>(")

    def statement(self, cursor):
        cursor = bare(cursor)
        said = self.said(*self.range(cursor))
        if cursor.kind in STATEMENTS and not NOT_WORTH.match(said) and not is_empty(cursor):
            self.around(cursor, "left out: ", f"(zuviFault({NUMBER}) ? void() : void(")

    def swapped(self, values):
        for one, other in zip(values, values[1:]):
            a, b = self.range(one), self.range(other)
            between = self.source[a[1]:b[0]]
            if (not a[0] < a[1] <= b[0] < b[1] or between.strip() != b","
                    or plain(one.type) != plain(other.type)
                    or self.source[a[0]:a[1]] == self.source[b[0]:b[1]]
                    or b"\n" in self.source[a[0]:b[1]]):
                continue
            self.add(a[0], b[1], "swapped: " + self.said(a[0], b[1]),
                     f"(zuviFault({NUMBER}) ? ", b, " : ", a, f"), (zuviFault({NUMBER}) ? ", a,
                     " : ", b, ")")

    def visit(self, cursor, within):
        kind, children = cursor.kind, list(cursor.get_children())
        begin, end = self.range(cursor)
        said = self.said(begin, end)
        if kind.is_expression() and NOT_WORTH.match(said) or "constexpr " in said[:40]:
            return
        if kind == Kind.COMPOUND_STMT:
            for child in children:
                self.statement(child)
        elif kind in (Kind.IF_STMT, Kind.WHILE_STMT, Kind.FOR_STMT, Kind.CXX_FOR_RANGE_STMT):
            *others, body = children
            head = self.source[begin:self.range(body)[0]]
            for child in others:
                if not child.kind.is_expression() or any(
                        one.extent.start.offset <= child.extent.start.offset < one.extent.end.offset
                        for one in others if not one.kind.is_expression()):
                    continue  # a declaration, or what asks what it declares
                after = self.source[self.range(child)[1]:].lstrip()
                if kind == Kind.IF_STMT and not after.startswith(b")"):
                    self.statement(child)  # before an else
                elif kind == Kind.IF_STMT:
                    self.turned(child)
                elif kind == Kind.WHILE_STMT or plain(child.type) == "bool":
                    self.around(child, "never: ", f"(!zuviFault({NUMBER}) && static_cast<bool>(")
            if head:
                self.statement(body)
        elif kind == Kind.CASE_STMT or kind == Kind.DEFAULT_STMT:
            children = children[-1:]
            self.statement(children[0])
        elif kind == Kind.RETURN_STMT and children:
            self.returned(children[0], begin, end, said)
        elif kind == Kind.CONDITIONAL_OPERATOR:
            self.turned(children[0])
        elif kind == Kind.VAR_DECL and children and plain(cursor.type) == "bool":
            if children[-1].kind.is_expression() and bare(children[-1]).kind not in LITERALS:
                self.turned(children[-1])
        elif kind == Kind.BINARY_OPERATOR and len(children) == 2:
            self.operator(cursor, *children)
        elif kind == Kind.CALL_EXPR and not cursor.spelling.startswith("operator"):
            self.swapped(list(cursor.get_arguments()))
        elif kind == Kind.INIT_LIST_EXPR:
            self.swapped(children)
        elif kind in LITERALS:
            self.literal(cursor, said)
        for child in children:
            self.visit(child, said)

    def returned(self, value, begin, end, said):
        if plain(value.type) == "bool":
            if bare(value).kind not in LITERALS:
                self.turned(value)
            return
        after = self.source[end:]
        semicolon = end + len(after) - len(after.lstrip()) + 1
        if self.source[semicolon - 1:semicolon] != b";" or re.fullmatch(
                r"return (\{\}|0|nullptr|std::nullopt|\w+(::\w+)*(\{\}|\(\)))", said):
            return
        self.add(begin, semicolon, "returns {}: " + said,
                 f"{{ if (zuviFault({NUMBER})) return {{}}; ", (begin, end), "; }")

    def operator(self, cursor, left, right):
        whole, a, b = self.range(cursor), self.range(left), self.range(right)
        between = self.source[a[1]:b[0]]
        sign = between.decode(errors="replace").strip()
        if sign in ("<", ">", "<=", ">="):
            name = "zuviLessOrEqual" if "=" in sign else "zuviLess"
            first, second = (b, a) if ">" in sign else (a, b)
            self.add(*whole, "limit moved: " + self.said(*whole), f"{name}({NUMBER}, ", first,
                     ", ", second, ")")
        elif sign in ("+", "-") and right.type.get_canonical().kind in NUMBERS:
            self.add(*whole, "sign turned: " + self.said(*whole), a,
                     f" {sign} (zuviFault({NUMBER}) ? -1 : 1) * ", b)
        elif sign in ("&&", "||"):
            before = {"&&": f"(zuviFault({NUMBER}) || static_cast<bool>(",
                      "||": f"(!zuviFault({NUMBER}) && static_cast<bool>("}[sign]
            for side in (left, right):
                if bare(side).kind != Kind.BINARY_OPERATOR or not re.search(
                        r"&&|\|\|", self.said(*self.range(side))):
                    self.around(side, "not asked: ", before)

    def literal(self, cursor, said):
        if cursor.kind == Kind.CXX_BOOL_LITERAL_EXPR:
            other = {"true": "false", "false": "true"}.get(said)
        elif cursor.kind == Kind.STRING_LITERAL:
            other = '"!' + said[1:] if re.fullmatch(r'"[^"]*"', said) else None
        elif re.fullmatch(r"\d+(\.\d+)?f?", said):
            other = f"{said} + 1" if float(said.rstrip("f")) < 100 else f"{said} * 2"
        else:
            other = f"{said} + 1" if re.fullmatch(r"'.'", said) else None
        if other:
            self.add(*self.range(cursor), f"{said} -> {other}",
                     f"(zuviFault({NUMBER}) ? {other} : {said})")


LITERALS = {Kind.INTEGER_LITERAL, Kind.FLOATING_LITERAL, Kind.STRING_LITERAL,
            Kind.CHARACTER_LITERAL, Kind.CXX_BOOL_LITERAL_EXPR}


def bare(cursor):
    """Without what the compiler wraps around an expression."""
    while cursor.kind == Kind.UNEXPOSED_EXPR:
        children = list(cursor.get_children())
        if len(children) != 1 or children[0].extent != cursor.extent:
            break
        cursor = children[0]
    return cursor


def is_empty(call):
    """Whether what is called does nothing, as most hooks of a base class."""
    called = call.referenced.get_definition() if call.referenced else None
    body = list(called.get_children())[-1:] if called else []
    return bool(body and body[0].kind == Kind.COMPOUND_STMT and not list(body[0].get_children()))


def plain(type):
    return re.sub(r"\bconst\b|&", "", type.get_canonical().spelling).strip()


def find(job):
    """The places of one file: (its name in the tree, its path, its compile command)."""
    file, path, command = job
    words = [word for word in shlex.split(command) if not word.endswith("ccache")][1:]
    arguments = [word for word in words[:words.index("-o")] if word != "-Werror"]
    return list(Finder(file, path, arguments).places.values())


def planted(file, source, numbered):
    """The source with the faults {number: place}, which may lie within each other."""
    def render(begin, end, entries):
        text, at = "", begin
        while entries:
            (number, place), *entries = entries
            inside = [entry for entry in entries if entry[1].begin < place.end]
            entries = entries[len(inside):]
            text += source[at:place.begin].decode()
            for piece in place.pieces:
                if isinstance(piece, str):
                    text += piece.replace(NUMBER, str(number))
                else:
                    text += render(*piece, [
                        entry for entry in inside
                        if piece[0] <= entry[1].begin and entry[1].end <= piece[1]])
            at = place.end
        return text + source[at:end].decode()

    entries = sorted(numbered.items(), key=lambda entry: (entry[1].begin, -entry[1].end))
    # No warning about what was planted; errors name the lines of the source.
    return ('#pragma GCC system_header\n#include "scripts/mutation/fault.h"\n'
            f'#line 1 "{file}"\n' + render(0, len(source), entries))
