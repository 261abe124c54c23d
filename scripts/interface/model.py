"""What a declaration of the interface says, whatever language it is written in, and how two compare.

A kind tells how a value is read: s signed, u unsigned, c character, f floating point, h handle or integer
as wide as a pointer, p pointer, *NAME pointer to that record, NAME that record itself, v none. A language
that cannot tell some of them apart offers them all; one that says p means any pointer.
"""

from dataclasses import dataclass, field


class Unreadable(Exception):
    """A declaration in a form that the reader does not know."""


@dataclass(frozen=True)
class Type:
    size: int
    kinds: frozenset

    def __str__(self):
        return f"{'/'.join(sorted(self.kinds))}{self.size}"


def make_type(size, *kinds):
    return Type(size, frozenset(kinds))


VOID = make_type(0, "v")
POINTER = make_type(4, "p")
HANDLE = make_type(4, "h")


def pointer_to(record):
    return make_type(4, f"*{record}")


@dataclass(frozen=True)
class Field:
    offset: int
    size: int
    element: Type


@dataclass
class Record:
    size: int = 0
    fields: dict = field(default_factory=dict)

    def add(self, name, element, count=1):
        """The next field of a packed record."""
        self.fields[name] = Field(self.size, element.size * count, element)
        self.size += element.size * count


@dataclass(frozen=True)
class Function:
    result: Type
    arguments: tuple

    def stack_bytes(self):
        return sum((argument.size + 3) // 4 * 4 for argument in self.arguments)


@dataclass
class Interface:
    constants: dict = field(default_factory=dict)
    records: dict = field(default_factory=dict)
    functions: dict = field(default_factory=dict)  # name: list of Function, one an overload
    lock_size: int = None  # bytes that it gives the host's lock


def same_type(truth, other):
    if truth == VOID or other == VOID:
        return truth == other
    if truth.size != other.size:
        return False
    (kind,) = truth.kinds
    if kind == "c":
        return bool(other.kinds & {"c", "u"})
    return kind in other.kinds or (kind.startswith("*") and "p" in other.kinds)


def compare(truth, other):
    """The differences of a binding from the header, one line each."""
    yield from compare_constants(truth.constants, other.constants)
    for name in sorted(truth.records.keys() | other.records.keys()):
        if name not in other.records:
            yield f"record {name} is missing"
        elif name not in truth.records:
            yield f"record {name} is not in the header"
        else:
            yield from compare_records(name, truth.records[name], other.records[name])
    for name in sorted(truth.functions.keys() | other.functions.keys()):
        if name not in other.functions:
            yield f"function {name} is missing"
        elif name not in truth.functions:
            yield f"function {name} is not in the header"
        else:
            for function in other.functions[name]:
                yield from compare_functions(name, truth.functions[name][0], function)
    if other.lock_size is not None and other.lock_size < truth.lock_size:
        yield f"the lock takes {truth.lock_size} bytes, not {other.lock_size}"


def compare_constants(truth, other):
    for name in sorted(truth.keys() | other.keys()):
        if name not in other:
            yield f"constant {name} is missing"
        elif name not in truth:
            yield f"constant {name} is not in the header"
        elif (truth[name] - other[name]) % 2**32:
            yield f"constant {name} is {other[name]}, in the header {truth[name]}"


def compare_records(name, truth, other):
    for field_name in truth.fields.keys() | other.fields.keys():
        ours, theirs = truth.fields.get(field_name), other.fields.get(field_name)
        if theirs is None:
            yield f"{name}.{field_name} is missing"
        elif ours is None:
            yield f"{name}.{field_name} is not in the header"
        elif (ours.offset, ours.size) != (theirs.offset, theirs.size):
            yield (
                f"{name}.{field_name} takes {theirs.size} bytes at {theirs.offset}, "
                f"in the header {ours.size} at {ours.offset}"
            )
        elif not same_type(ours.element, theirs.element):
            yield f"{name}.{field_name} is {theirs.element}, in the header {ours.element}"
    if truth.size != other.size:
        yield f"{name} takes {other.size} bytes, in the header {truth.size}"


def compare_functions(name, truth, other):
    if len(truth.arguments) != len(other.arguments):
        yield f"{name} has {len(other.arguments)} arguments, in the header {len(truth.arguments)}"
        return
    for index, (ours, theirs) in enumerate(zip(truth.arguments, other.arguments), 1):
        if not same_type(ours, theirs):
            yield f"{name}, argument {index} is {theirs}, in the header {ours}"
    if not same_type(truth.result, other.result):
        yield f"{name} answers {other.result}, in the header {truth.result}"
