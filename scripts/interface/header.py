"""The interface as the C headers declare it: names read from the text, everything else told by a compiler.

A program of nothing but inline assembly has the compiler print every size, offset and value as a constant;
it is compiled, never assembled or run, so a cross-compiler answers as well as the machine's own.
"""

import re
import subprocess

from .model import Field, Function, Interface, Record, Unreadable, VOID, make_type

HEADERS = (
    "corvmo32_errors.h",
    "corvmo32_notifications.h",
    "corvmo32_map.h",
    "corvmo32_records.h",
    "corvmo32.h",
)
SYSTEM_CONSTANTS = ("MMSYSERR_NOERROR", "MMSYSERR_INVALPARAM")  # the system's own on Windows
MAX_ARGUMENTS = 8

PROBE_TOP = """
#include <stddef.h>
#include <tuple>
#include <type_traits>
template <class T> constexpr int kindOf() {
    using E = std::remove_all_extents_t<T>;
    if (std::is_void_v<E>) return 'v';
    if (std::is_same_v<E, HMIDIOUT> || std::is_same_v<E, HWND> || std::is_same_v<E, HGLOBAL> ||
        std::is_same_v<E, unsigned long> || std::is_same_v<E, long>) return 'h';
    if (std::is_pointer_v<E>) return 'p';
    if (std::is_same_v<E, char>) return 'c';
    if (std::is_floating_point_v<E>) return 'f';
    if (std::is_class_v<E> || std::is_union_v<E>) return 'r';
    return std::is_signed_v<E> ? 's' : 'u';
}
template <class T> constexpr int sizeOf() {
    if constexpr (std::is_void_v<T>) return 0; else return sizeof(T);
}
template <class F> struct Signature;
template <class R, class... A> struct Signature<R(CORVMO_CALL*)(A...)> {
    using Result = R;
    static constexpr int count = sizeof...(A);
    static_assert(count <= 8, "MAX_ARGUMENTS");
    template <int i> using Argument = std::tuple_element_t<i, std::tuple<A..., void>>;
    template <int i> static constexpr int size() {
        if constexpr (i < count) return sizeOf<Argument<i>>(); else return 0;
    }
    template <int i> static constexpr int kind() {
        if constexpr (i < count) return kindOf<Argument<i>>(); else return 0;
    }
};
#define EMIT2(text, a, b) asm volatile("@@ " text " %c0 %c1" :: "i"(a), "i"(b))
#define EMIT4(text, a, b, c, d) \\
    asm volatile("@@ " text " %c0 %c1 %c2 %c3" :: "i"(a), "i"(b), "i"(c), "i"(d))
void probe() {
"""


def without_comments(text):
    return re.sub(r"/\*.*?\*/", " ", text, flags=re.DOTALL)


def function_names(text):
    return re.findall(r"CORVMO_CALL\s+(\w+)\(", text)


def linux_function_names(text):
    return re.findall(r"^[\w*]+ (corvmo_\w+|\w+CriticalSection)\(", text, re.MULTILINE)


def constant_names(text):
    names = re.findall(r"^#define (\w+) [-\dx]", text, re.MULTILINE)
    for body in re.findall(r"enum \{(.*?)\}", text, re.DOTALL):
        names += re.findall(r"(\w+) =", body)
    return names


def record_fields(text):
    """Name: list of (field, place in the C record, record type or None)."""
    records = {}
    for match in re.finditer(r"typedef struct \w+ \{(.*?)\n\} (\w+);", text, re.DOTALL):
        body, name = match[1], match[2]
        fields = []
        union = re.search(r"union \{(.*?)struct \{(.*?)\} block;\s*\} message;", body, re.DOTALL)
        if union:
            body = body.replace(union[0], "")
            block = name + "BLOCK"
            records[block] = [(f, f"message.block.{f}", r) for f, r in plain_fields(union[2])]
            fields = [(f, f"message.{f}", r) for f, r in plain_fields(union[1])]
        fields += [(f, f, r) for f, r in plain_fields(body)]
        records[name] = fields
    return records


def plain_fields(body):
    for declaration in filter(None, map(str.strip, body.split(";"))):
        match = re.search(r"\(\*(\w+)\)\(|(\w+)(?:\s*\[\w+\])?$", declaration)
        if not match:
            raise Unreadable(f"cannot read the field '{declaration}'")
        yield match[1] or match[2], None if match[1] else record_kind(declaration)


def record_kind(declaration):
    """NAME or *NAME where something is declared to be a record of the interface, or to point to one."""
    match = re.search(r"\b(MM(?!RESULT)[A-Z]+|MIDIOUT|corvmo_(?:output|message|sent))\b(\*?)", declaration)
    return match[2] + match[1] if match else None


def function_record_kinds(text):
    """Name: kinds of its result and arguments, as record_kind tells them."""
    found = {}
    pattern = r"^([\w* ]+?) (?:CORVMO_CALL )?(\w+)\(([^;{}]*)\);"
    for result, name, arguments in re.findall(pattern, text, re.MULTILINE):
        flat = re.sub(r"\([^()]*\)\([^()]*\)", "pointer", arguments)
        found[name] = [record_kind(part) for part in [result, *flat.split(",")]]
    return found


def probe_source(includes, records, functions, constants):
    lines = [f'#include "{include}"' for include in includes] + [PROBE_TOP]
    for record, fields in records.items():
        base = record.removesuffix("BLOCK")
        for name, place, _ in fields:
            member = f"decltype({base}::{place.partition('.')[0]})"
            if "." in place:
                member = f"std::remove_reference_t<decltype((({base}*)0)->{place})>"
            lines.append(
                f'EMIT4("field {record} {name}", offsetof({base}, {place}), sizeof({member}), '
                f"sizeof(std::remove_all_extents_t<{member}>), kindOf<{member}>());"
            )
        whole = base if base == record else f"decltype({base}::message.block)"
        lines.append(f'EMIT2("record {record}", sizeof({whole}), 0);')
    for name in functions:
        signature = f"Signature<decltype(&{name})>"
        lines.append(
            f'EMIT2("function {name}", sizeOf<{signature}::Result>(), '
            f"kindOf<{signature}::Result>());"
        )
        for index in range(MAX_ARGUMENTS):
            lines.append(
                f'EMIT2("argument {name} {index}", {signature}::size<{index}>(), '
                f"{signature}::kind<{index}>());"
            )
    for name in constants:
        lines.append(f'EMIT2("constant {name}", static_cast<int>({name}), 0);')
    if "windows.h" in includes:
        lines.append('EMIT2("lock -", sizeof(CRITICAL_SECTION), 0);')
    return "\n".join(lines) + "\n}\n"


def run_compiler(compiler, source, folders):
    command = [compiler, "-std=c++17", "-S", "-O1", "-w", "-x", "c++", "-", "-o", "-"]
    command += [f"-I{folder}" for folder in folders]
    done = subprocess.run(command, input=source, capture_output=True, text=True)
    if done.returncode:
        raise Unreadable(f"{compiler} refuses the headers:\n{done.stderr[:2000]}")
    return re.findall(r"@@ (\w+) (\S+) (.*)", done.stdout)


def read(top, compiler, on_windows):
    """The truth: every name of the headers, as the compiler lays it out."""
    folders = [top / "include"]
    includes = ["windows.h"] if on_windows else []
    includes.append("corvmo32.h")
    text = without_comments("\n".join((top / "include" / name).read_text() for name in HEADERS))
    functions = function_names(text)
    constants = constant_names(text) + list(SYSTEM_CONSTANTS)
    if not on_windows:
        folders.append(top / "platform" / "linux" / "include")
        includes.append("corvmo32_linux.h")
        linux_text = without_comments((folders[1] / "corvmo32_linux.h").read_text())
        functions += linux_function_names(linux_text)
        text += linux_text
    records = record_fields(text)
    named = function_record_kinds(text)
    source = probe_source(includes, records, functions, constants)
    interface = Interface()
    record_types = {(r, f): kind for r, fields in records.items() for f, _, kind in fields}
    arguments = {name: [] for name in functions}
    for what, name, rest in run_compiler(compiler, source, folders):
        words = rest.split()
        if what == "constant":
            interface.constants[name] = int(words[0])
        elif what == "field":
            offset, size, element, kind = map(int, words[1:])
            kinds = record_types[name, words[0]] or chr(kind)
            record = interface.records.setdefault(name, Record())
            record.fields[words[0]] = Field(offset, size, make_type(element, kinds))
        elif what == "record":
            interface.records[name].size = int(words[0])
        elif what == "function":
            size, kind = map(int, words)
            result = make_type(size, named[name][0] or chr(kind)) if size else VOID
            interface.functions[name] = [result]
        elif what == "argument":
            index, size, kind = map(int, words)
            if size:
                arguments[name].append(make_type(size, named[name][1 + index] or chr(kind)))
        elif what == "lock":
            interface.lock_size = int(words[0])
    for name, [result] in interface.functions.items():
        interface.functions[name] = [Function(result, tuple(arguments[name]))]
    return interface
