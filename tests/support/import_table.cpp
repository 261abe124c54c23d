// Walks a module's import table in memory.
#include "tests/support/import_table.h"

#include <cstring>

namespace {

template <typename Record>
Record* at(HMODULE module, DWORD offset) {
    return reinterpret_cast<Record*>(reinterpret_cast<char*>(module) + offset);
}

const void* replaceEntry(IMAGE_THUNK_DATA& entry, const void* replacement) {
    const void* const before = reinterpret_cast<const void*>(entry.u1.Function);
    DWORD protection = 0;
    VirtualProtect(&entry, sizeof entry, PAGE_READWRITE, &protection);
    entry.u1.Function = reinterpret_cast<DWORD_PTR>(replacement);
    VirtualProtect(&entry, sizeof entry, protection, &protection);
    return before;
}

bool names(HMODULE module, const IMAGE_THUNK_DATA& name, const char* function) {
    if ((name.u1.Ordinal & IMAGE_ORDINAL_FLAG) != 0) {
        return false;
    }
    const auto* byName = at<IMAGE_IMPORT_BY_NAME>(module, name.u1.AddressOfData);
    return std::strcmp(reinterpret_cast<const char*>(byName->Name), function) == 0;
}

} // namespace

const void* replaceImport(HMODULE module, const char* function, const void* replacement) {
    const auto* dos = at<IMAGE_DOS_HEADER>(module, 0);
    const auto* headers = at<IMAGE_NT_HEADERS>(module, static_cast<DWORD>(dos->e_lfanew));
    const auto& directory = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    for (auto* library = at<IMAGE_IMPORT_DESCRIPTOR>(module, directory.VirtualAddress);
         library->Name != 0; ++library) {
        const auto* name = at<IMAGE_THUNK_DATA>(module, library->OriginalFirstThunk);
        auto* entry = at<IMAGE_THUNK_DATA>(module, library->FirstThunk);
        for (; name->u1.AddressOfData != 0; ++name, ++entry) {
            if (names(module, *name, function)) {
                return replaceEntry(*entry, replacement);
            }
        }
    }
    return nullptr;
}
