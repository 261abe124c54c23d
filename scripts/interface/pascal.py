"""Reads bindings/pascal/corvmo32.pas, with the sizes that it has in a 32-bit program."""

import re

from .model import (
    HANDLE,
    POINTER,
    VOID,
    Function,
    Interface,
    Record,
    Unreadable,
    make_type,
    pointer_to,
)

TYPES = {
    "Byte": make_type(1, "u"),
    "ShortInt": make_type(1, "s"),
    "AnsiChar": make_type(1, "c"),
    "SmallInt": make_type(2, "s"),
    "Word": make_type(2, "u"),
    "LongInt": make_type(4, "s"),
    "LongWord": make_type(4, "u"),
    "Single": make_type(4, "f"),
    "Pointer": POINTER,
    "PByte": POINTER,
    "PAnsiChar": POINTER,
    "PSmallInt": POINTER,
}
CONSTANT = re.compile(r"^  (\w+) = (?:LongWord\()?([$\w-]+)\)?;", re.MULTILINE)
RECORD = re.compile(r"^  (\w+) = (packed )?record\b(.*?)^  end;", re.MULTILINE | re.DOTALL)
FIELD = re.compile(r"\s*(\w+?)_?: (?:array\[0\.\.(\w+)( - 1)?\] of )?(\w+);")
FUNCTION = re.compile(
    r"^(?:function|procedure) (\w+)(?:\(([^)]*)\))?(?:: (\w+))?;([^;]*); external CorvmoLib;",
    re.MULTILINE,
)


def number(text):
    return int(text[1:], 16) if text.startswith("$") else int(text)


def read(path):
    text = re.sub(r"//.*", "", path.read_text())
    interface = Interface()
    types = dict(TYPES)
    for name in re.findall(r"^  (\w+) = TCorvmoHandle;", text, re.MULTILINE) + ["TCorvmoHandle"]:
        types[name] = HANDLE
    for name, target in re.findall(r"^  (P\w+) = \^(\w+);", text, re.MULTILINE):
        types[name] = POINTER if target in types else pointer_to(target)
    constants, _, rest = text.partition("\ntype\n")
    for name, value in CONSTANT.findall(constants):
        interface.constants[name] = number(value)
    for name, packed, body in RECORD.findall(rest):
        if not packed:
            raise Unreadable(f"{name} is not packed")
        record = read_record(name, body, types, interface.constants)
        interface.records[name] = record
        types[name] = make_type(record.size, name)
    for name, parameters, result, convention in FUNCTION.findall(rest):
        if convention.strip() != "stdcall":
            raise Unreadable(f"{name} is not stdcall")
        arguments = []
        for group in filter(None, parameters.split(";")):
            names, kind = group.split(":")
            arguments += [types[kind.strip()]] * len(names.split(","))
        function = Function(types[result] if result else VOID, tuple(arguments))
        interface.functions[name] = [function]
    return interface


def read_record(name, body, types, constants):
    record = Record()
    for field_name, last, less_one, kind in FIELD.findall(body):
        if kind not in types:
            raise Unreadable(f"unknown type {kind} in {name}")
        count = 1
        if last:
            count = constants[last] if less_one else int(last) + 1
        record.add(field_name, types[kind], count)
    if FIELD.sub("", body).strip():
        raise Unreadable(f"cannot read in {name}: {FIELD.sub('', body).strip()}")
    return record
