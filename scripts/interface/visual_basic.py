"""Reads bindings/vb6/Corvmo32.bas: records as types, laid out as Visual Basic does, or as OFS_ and SIZE_."""

import re

from .model import (
    POINTER,
    VOID,
    Field,
    Function,
    Interface,
    Record,
    Unreadable,
    make_type,
    pointer_to,
)

TYPES = {
    "Byte": make_type(1, "u", "s", "c"),
    "Integer": make_type(2, "s", "u"),
    "Long": make_type(4, "s", "u", "h", "p"),
    "Single": make_type(4, "f"),
}
CONSTANT = re.compile(r"^Public Const (\w+) As Long = (\S+)$", re.MULTILINE)
TYPE = re.compile(r"^Public Type (\w+)\n(.*?)^End Type", re.MULTILINE | re.DOTALL)
MEMBER = re.compile(r"\s*(\w+?)_?(?:\(0 To (\d+)\))? As (\w+)\n")
DECLARE = re.compile(
    r'^Public Declare (Sub|Function) (\w+) Lib "corvmo32.dll" \((.*)\)(?: As (\w+))?$', re.MULTILINE
)
PARAMETER = re.compile(r"(ByVal )?\w+ As (\w+)")
PLACE = re.compile(r"^(?:' (.*)\n)?Public Const (OFS_\w+) As Long = \d+(?: ' (.*))?$", re.MULTILINE)
PLACE_NOTE = re.compile(r"(\w+)(?:\((\d+)\))?: ")


def number(text):
    """A literal as Visual Basic reads it: hexadecimal without & at its end is 16 bits, with a sign."""
    if not text.startswith("&H"):
        return int(text)
    value = int(text[2:].rstrip("&"), 16)
    if not text.endswith("&") and value < 0x10000:
        return value - 0x10000 if value & 0x8000 else value
    return value


def read(path):
    raw = path.read_bytes().decode("ascii")
    if raw.count("\r\n") != raw.count("\n"):
        raise Unreadable("Visual Basic takes lines that end with CR and LF only")
    commented = raw.replace("\r\n", "\n").replace(" _\n", " ")
    text = re.sub(r" *'.*", "", commented)
    interface = Interface()
    for name, value in CONSTANT.findall(text):
        interface.constants[name] = number(value)
    interface.lock_size = interface.constants.pop("SIZE_LOCK")
    for name, body in TYPE.findall(text):
        interface.records[name] = read_type(name, body, interface.records)
    read_places(commented, interface)
    for kind, name, parameters, result in DECLARE.findall(text):
        listed = filter(None, parameters.split(", "))
        arguments = tuple(read_parameter(text, interface.records) for text in listed)
        if (kind == "Sub") != (result == ""):
            raise Unreadable(f"{name} is a {kind} and answers '{result}'")
        function = Function(TYPES[result] if result else VOID, arguments)
        interface.functions[name] = [function]
    return interface


def read_places(text, interface):
    """Records that no type can hold: SIZE_RECORD, and OFS_RECORD_field whose comment begins with its type."""
    for name in [name for name in interface.constants if name.startswith("SIZE_")]:
        interface.records[name[5:]] = Record(interface.constants.pop(name))
    for comment, name, trailing in PLACE.findall(text):
        _, record_name, field_name = name.split("_", 2)
        note = PLACE_NOTE.match(trailing or comment)
        if not note:
            raise Unreadable(f"the comment of {name} does not begin with its type")
        kind, count = note.groups()
        element = TYPES.get(kind) or make_type(interface.records[kind].size, kind)
        place = Field(interface.constants.pop(name), element.size * int(count or 1), element)
        interface.records[record_name].fields[field_name] = place


def read_type(name, body, records):
    record = Record()
    widest = 1
    for member, last, kind in MEMBER.findall(body):
        element = TYPES.get(kind) or make_type(records[kind].size, kind)
        alignment = element.size if kind in TYPES else 1
        widest = max(widest, alignment)
        record.size += -record.size % alignment
        record.add(member, element, int(last) + 1 if last else 1)
    record.size += -record.size % widest
    if MEMBER.sub("", body).strip():
        raise Unreadable(f"cannot read in {name}: {MEMBER.sub('', body).strip()}")
    return record


def read_parameter(text, records):
    match = PARAMETER.fullmatch(text.strip())
    if not match:
        raise Unreadable(f"cannot read the parameter '{text}'")
    by_value, kind = match.groups()
    if not by_value or kind == "String":
        return pointer_to(kind) if kind in records else POINTER
    return TYPES[kind]
