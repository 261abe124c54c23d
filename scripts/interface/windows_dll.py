"""Checks the built DLL: what it exports and imports, and what its header asks of Windows."""

import re
import subprocess

OBJDUMP = "i686-w64-mingw32-objdump"

# What the DLL may import. Every Windows since 2000 exports each of these, so a name that is not here may
# keep the DLL from loading on an old system: look it up before it is added.
KNOWN_IMPORTS = {
    "kernel32.dll": """CloseHandle CreateFileA DeleteCriticalSection EnterCriticalSection FreeLibrary
        GetFileSize GetLastError GetModuleHandleA GetProcAddress GlobalAlloc GlobalFree GlobalLock
        GlobalReAlloc GlobalSize GlobalUnlock InitializeCriticalSection LeaveCriticalSection LoadLibraryA
        ReadFile Sleep TlsGetValue VirtualProtect VirtualQuery""",
    "msvcrt.dll": """_amsg_exit _controlfp _initterm _iob _lock _unlock abort calloc free fwrite memchr
        memcpy memset realloc strlen strncmp strtol vfprintf""",
    "user32.dll": "PostMessageA",
    "winmm.dll": """midiOutClose midiOutGetNumDevs midiOutLongMsg midiOutOpen midiOutPrepareHeader
        midiOutReset midiOutShortMsg midiOutUnprepareHeader timeBeginPeriod timeEndPeriod timeGetDevCaps
        timeGetTime timeKillEvent timeSetEvent""",
}


def read_dump(dll):
    done = subprocess.run([OBJDUMP, "-p", dll], check=True, capture_output=True, text=True)
    return done.stdout


def exports(dump):
    table = dump.partition("[Ordinal/Name Pointer] Table")[2].partition("\n\n")[0]
    return set(re.findall(r"\] (\S+)$", table, re.MULTILINE))


def imports(dump):
    for name, table in re.findall(r"DLL Name: (\S+)\n.*?\n(.*?)\n\n", dump, re.DOTALL):
        yield name.lower(), re.findall(r"^\t\w+\s+\d+\s+(\S+)", table, re.MULTILINE)


def problems(dll, defined, version):
    dump = read_dump(dll)
    if "pei-i386" not in dump:
        yield "it is no 32-bit PE file"
    for name in sorted(exports(dump) ^ defined):
        yield f"{name} is exported or listed in corvmo32.def, but not both"
    libraries = list(imports(dump))
    if not libraries:
        yield "no imports can be read"
    for library, names in libraries:
        if library not in KNOWN_IMPORTS:
            yield f"it imports from {library}"
            continue
        for name in sorted(set(names) - set(KNOWN_IMPORTS[library].split())):
            yield f"it imports {name} of {library}, which is not known to exist on every Windows"
    for flag in ("DYNAMIC_BASE", "NX_COMPAT"):
        if not re.search(rf"^\s+{flag}$", dump, re.MULTILINE):
            yield f"{flag} is not set"
    if not re.search(r"^Entry 5 0*[1-9a-f]", dump, re.MULTILINE):
        yield "it has no relocations, so that it cannot be moved"
    for part, value in (("Major", 4), ("Minor", 0)):
        if not re.search(rf"^{part}SubsystemVersion\s+{value}$", dump, re.MULTILINE):
            yield "its subsystem version is not 4.0"
    if f"{version}\0".encode("utf-16-le") not in dll.read_bytes():
        yield f"its version resource does not say {version}"
