"""Reads bindings/python/corvmo32.py by importing it: with the sizes of a 32-bit process, or this machine's."""

import ctypes
import importlib.machinery
import importlib.util

from .model import VOID, Field, Function, Interface, Record, Unreadable, make_type

KINDS = {
    ctypes.c_char: "c",
    ctypes.c_float: "f",
    ctypes.c_int8: "s",
    ctypes.c_int16: "s",
    ctypes.c_int32: "s",
    ctypes.c_uint8: "u",
    ctypes.c_uint16: "u",
    ctypes.c_uint32: "u",
}
POINTER_WIDE = {
    ctypes.c_void_p: ("h", "p"),
    ctypes.c_char_p: ("p",),
    ctypes.c_size_t: ("h",),
    ctypes.c_ssize_t: ("h",),
}


def load(path):
    loader = importlib.machinery.SourceFileLoader(path.stem, str(path))
    module = importlib.util.module_from_spec(importlib.util.spec_from_loader(path.stem, loader))
    loader.exec_module(module)
    return module


def type_of(kind, native=False):
    if kind is None:
        return VOID
    if kind in KINDS:
        return make_type(ctypes.sizeof(kind), KINDS[kind])
    if issubclass(kind, ctypes.Structure):
        size = ctypes.sizeof(kind) if native else read_record(kind).size
        return make_type(size, kind.__name__)
    size = ctypes.sizeof(kind) if native else 4
    if kind in POINTER_WIDE:
        return make_type(size, *POINTER_WIDE[kind])
    if issubclass(kind, ctypes._CFuncPtr):
        return make_type(size, "p")
    if issubclass(kind, ctypes._Pointer):
        target = kind._type_
        is_record = issubclass(target, ctypes.Structure)
        return make_type(size, f"*{target.__name__}" if is_record else "p")
    raise Unreadable(f"unknown type {kind.__name__}")


def element_and_count(kind):
    if issubclass(kind, ctypes.Array):
        return kind._type_, kind._length_
    return kind, 1


def read_record(kind):
    """The record as a 32-bit process lays it out."""
    record = Record()
    if kind._pack_ != 1:
        raise Unreadable(f"{kind.__name__} is not packed")
    for name, field_kind in kind._fields_:
        if issubclass(field_kind, ctypes.Union):
            # A union's records are declared by themselves; what is left is its plain member.
            name, field_kind = next(
                f for f in field_kind._fields_ if not issubclass(f[1], ctypes.Structure)
            )
        element, count = element_and_count(field_kind)
        record.add(name.rstrip("_"), type_of(element), count)
    return record


def read_native_record(kind):
    record = Record(ctypes.sizeof(kind))
    for name, field_kind in kind._fields_:
        place = getattr(kind, name)
        if issubclass(field_kind, ctypes.Union):
            name, field_kind = field_kind._fields_[0]
        element, _ = element_and_count(field_kind)
        record.fields[name.rstrip("_")] = Field(place.offset, place.size, type_of(element, True))
    return record


def read(path, native=False):
    module = load(path)
    interface = Interface()
    interface.lock_size = module.HostLock.SIZE
    for name, value in vars(module).items():
        if isinstance(value, int) and name.isupper():
            interface.constants[name] = value
        elif isinstance(value, type) and issubclass(value, ctypes.Structure):
            if value.__module__ == module.__name__ and not name.startswith("_"):
                packed = issubclass(value, module._Record)
                if native:
                    interface.records[name] = read_native_record(value)
                elif packed:
                    interface.records[name] = read_record(value)
    declared = {**module._FUNCTIONS, **(module._LINUX_FUNCTIONS if native else {})}
    for name, (result, arguments) in declared.items():
        types = tuple(type_of(argument, native) for argument in arguments)
        interface.functions[name] = [Function(type_of(result, native), types)]
    return interface
