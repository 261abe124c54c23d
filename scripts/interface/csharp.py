"""Reads bindings/csharp/Corvmo32.cs."""

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
    "byte": make_type(1, "u"),
    "sbyte": make_type(1, "s"),
    "short": make_type(2, "s"),
    "ushort": make_type(2, "u"),
    "int": make_type(4, "s"),
    "uint": make_type(4, "u"),
    "float": make_type(4, "f"),
    "IntPtr": make_type(4, "h", "p"),
    "UIntPtr": HANDLE,
    "void": VOID,
}
RECORD = re.compile(r"(?:\[StructLayout\(([^)]*)\)\]\s*)?public struct (\w+)\s*\{(.*?)\}", re.DOTALL)
FIELD = re.compile(
    r"\s*(?:\[MarshalAs\(UnmanagedType\.ByValArray, SizeConst = (?:Corvmo32\.)?(\w+)\)\]\s*)?"
    r"public (\w+)(\[\])? @?(\w+);"
)
FUNCTION = re.compile(
    r"\[DllImport\(Dll, ([^\]]*)\)\]\s*public static extern (\w+) (\w+)\(([^;]*)\);", re.DOTALL
)
PARAMETER = re.compile(r"(\[MarshalAs\([\w.]+\)\] )?(ref |out )?(\w+)(\[\])? @?\w+")


def type_named(name, records):
    if name in records:
        return make_type(records[name].size, name)
    if name not in TYPES:
        raise Unreadable(f"unknown type {name}")
    return TYPES[name]


def read(path):
    text = re.sub(r"//.*", "", path.read_text())
    interface = Interface()
    for kind, name, value in re.findall(r"public const (\w+) (\w+) = ([^;]+);", text):
        interface.constants[name] = int(value.rstrip("u"), 0)
    interface.lock_size = interface.constants.pop("LockSize")
    for layout, name, body in RECORD.findall(text):
        if layout != "LayoutKind.Sequential, Pack = 1":
            raise Unreadable(f"{name} is not sequential and packed")
        interface.records[name] = read_record(name, body, interface)
    for options, result, name, parameters in FUNCTION.findall(text):
        if options != "CallingConvention = CallingConvention.StdCall, ExactSpelling = true":
            raise Unreadable(f"{name} is not imported as StdCall under its exact name")
        listed = filter(None, re.split(r",\s*", re.sub(r"\s+", " ", parameters).strip()))
        arguments = tuple(read_parameter(text, interface.records) for text in listed)
        function = Function(TYPES[result], arguments)
        interface.functions.setdefault(name, []).append(function)
    return interface


def read_record(name, body, interface):
    record = Record()
    for count, kind, array, field_name in FIELD.findall(body):
        if bool(count) != bool(array):
            raise Unreadable(f"{name}.{field_name} is an array without a size, or a size without one")
        number = interface.constants.get(count) or int(count or 1)
        record.add(field_name, type_named(kind, interface.records), number)
    if FIELD.sub("", body).strip():
        raise Unreadable(f"cannot read in {name}: {FIELD.sub('', body).strip()}")
    return record


def read_parameter(text, records):
    match = PARAMETER.fullmatch(text)
    if not match:
        raise Unreadable(f"cannot read the parameter '{text}'")
    marshalled, by_reference, kind, array = match.groups()
    if by_reference or array or marshalled:
        return pointer_to(kind) if kind in records else POINTER
    return TYPES[kind]
