// The program's own settings in an .ini file.
#include "desktop/program_settings.h"

#include <windows.h>

#include <fstream>

#include "shared/settings_store.h"

namespace desktop {

namespace {

constexpr const wchar_t* kSection = L"karaoke";

std::wstring readText(const std::filesystem::path& file, const wchar_t* key) {
    wchar_t text[256] = L"";
    GetPrivateProfileStringW(kSection, key, L"", text, 256, file.c_str());
    return text;
}

int readNumber(const std::filesystem::path& file, const wchar_t* key, int otherwise) {
    return static_cast<int>(GetPrivateProfileIntW(kSection, key, otherwise, file.c_str()));
}

void write(const std::filesystem::path& file, const wchar_t* key, const std::wstring& text) {
    WritePrivateProfileStringW(kSection, key, text.c_str(), file.c_str());
}

/// Windows keeps a file's encoding, and begins a new one in the system's code page.
void makeUnicodeFile(const std::filesystem::path& file) {
    std::error_code failed;
    std::filesystem::create_directories(file.parent_path(), failed);
    if (!std::filesystem::exists(file, failed)) {
        std::ofstream(file, std::ios::binary) << "\xFF\xFE";
    }
}

} // namespace

std::filesystem::path programSettingsFile() {
    const std::filesystem::path songs = host::SettingsStore::usualFile();
    return songs.empty() ? songs : songs.parent_path() / "karaoke.ini";
}

ProgramSettings readProgramSettings(const std::filesystem::path& file) {
    ProgramSettings settings;
    if (file.empty()) {
        return settings;
    }
    settings.outputs = {readText(file, L"output"), readText(file, L"second_output")};
    settings.playList = readNumber(file, L"play_list", 1) != 0;
    settings.mixer = readNumber(file, L"mixer", 0) != 0;
    settings.place = {readNumber(file, L"left", 0), readNumber(file, L"top", 0),
                      readNumber(file, L"right", 0), readNumber(file, L"bottom", 0)};
    return settings;
}

void writeProgramSettings(const std::filesystem::path& file, const ProgramSettings& settings) {
    if (file.empty()) {
        return;
    }
    makeUnicodeFile(file);
    write(file, L"output", settings.outputs.first);
    write(file, L"second_output", settings.outputs.second);
    write(file, L"play_list", settings.playList ? L"1" : L"0");
    write(file, L"mixer", settings.mixer ? L"1" : L"0");
    write(file, L"left", std::to_wstring(settings.place.left));
    write(file, L"top", std::to_wstring(settings.place.top));
    write(file, L"right", std::to_wstring(settings.place.right));
    write(file, L"bottom", std::to_wstring(settings.place.bottom));
}

} // namespace desktop
