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
    if (std::is_pointer_v<E> || std::is_same_v<E, unsigned long> || std::is_same_v<E, long>) return 'p';
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
        kind = declaration.split()[0]
        yield match[1] or match[2], kind if kind.startswith("MM") and "*" not in declaration else None


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
            f'EMIT4("function {name}", {signature}::count, sizeOf<{signature}::Result>(), '
            f"kindOf<{signature}::Result>(), 0);"
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
            count, size, kind = map(int, words[:3])
            result = make_type(size, chr(kind)) if size else VOID
            interface.functions[name] = [(count, result)]
        elif what == "argument":
            arguments[name].append(make_type(int(words[1]), chr(int(words[2]))))
        elif what == "lock":
            interface.lock_size = int(words[0])
    for name, [(count, result)] in interface.functions.items():
        interface.functions[name] = [Function(result, tuple(arguments[name][:count]))]
    return interface
