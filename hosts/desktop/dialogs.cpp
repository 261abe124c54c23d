// The open dialog, the outputs dialog, dropped files.
#include "desktop/dialogs.h"

#include <commdlg.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <iterator>

#include "desktop/resource.h"

namespace desktop {

namespace {

constexpr std::size_t kRoomForNames = 64 * 1024;
constexpr const wchar_t* kSongFilter =
    L"Songs (*.kar, *.mid, *.midi, *.rmi)\0*.kar;*.mid;*.midi;*.rmi\0"
    L"All files\0*.*\0";

/// The dialog answers one path, or a folder and the names in it, each ended by a zero and all by one more.
std::vector<std::wstring> chosenPaths(const wchar_t* names) {
    std::vector<std::wstring> parts;
    for (const wchar_t* part = names; *part != L'\0'; part += parts.back().size() + 1) {
        parts.emplace_back(part);
    }
    if (parts.size() < 2) {
        return parts;
    }
    std::vector<std::wstring> paths;
    std::transform(parts.begin() + 1, parts.end(), std::back_inserter(paths),
                   [&](const std::wstring& name) {
                       return (std::filesystem::path(parts.front()) / name).native();
                   });
    return paths;
}

bool isSongFile(const std::filesystem::path& path) {
    constexpr std::array<const wchar_t*, 4> kEndings = {L".kar", L".mid", L".midi", L".rmi"};
    const std::wstring ending = path.extension().native();
    return std::any_of(kEndings.begin(), kEndings.end(), [&](const wchar_t* known) {
        return CompareStringW(LOCALE_INVARIANT, NORM_IGNORECASE, ending.c_str(), -1, known, -1) ==
               CSTR_EQUAL;
    });
}

struct OutputsQuestion {
    std::vector<std::wstring> names;
    OutputChoice choice;
};

void fillOutputs(HWND dialog, int id, const OutputsQuestion& question, const wchar_t* none,
                 const std::wstring& chosen) {
    const auto add = [&](const std::wstring& name) {
        SendDlgItemMessageW(dialog, id, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(name.c_str()));
    };
    add(none);
    std::for_each(question.names.begin(), question.names.end(), add);
    const auto found = std::find(question.names.begin(), question.names.end(), chosen);
    const auto index = found == question.names.end() ? 0 : found - question.names.begin() + 1;
    SendDlgItemMessageW(dialog, id, CB_SETCURSEL, static_cast<WPARAM>(index), 0);
}

std::wstring chosenOutput(HWND dialog, int id, const OutputsQuestion& question) {
    const LRESULT index = SendDlgItemMessageW(dialog, id, CB_GETCURSEL, 0, 0);
    return index < 1 ? std::wstring() : question.names[static_cast<std::size_t>(index) - 1];
}

INT_PTR CALLBACK outputsDialog(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_INITDIALOG) {
        SetWindowLongPtrW(dialog, DWLP_USER, lParam);
        const auto& question = *reinterpret_cast<const OutputsQuestion*>(lParam);
        fillOutputs(dialog, ID_FIRST_OUTPUT, question, L"The first there is",
                    question.choice.first);
        fillOutputs(dialog, ID_SECOND_OUTPUT, question, L"None", question.choice.second);
        return TRUE;
    }
    if (message != WM_COMMAND) {
        return FALSE;
    }
    auto& question = *reinterpret_cast<OutputsQuestion*>(GetWindowLongPtrW(dialog, DWLP_USER));
    if (LOWORD(wParam) == IDOK) {
        question.choice = {chosenOutput(dialog, ID_FIRST_OUTPUT, question),
                           chosenOutput(dialog, ID_SECOND_OUTPUT, question)};
    } else if (LOWORD(wParam) != IDCANCEL) {
        return FALSE;
    }
    EndDialog(dialog, LOWORD(wParam));
    return TRUE;
}

} // namespace

std::vector<std::wstring> askForSongs(HWND owner) {
    std::wstring names(kRoomForNames, L'\0');
    OPENFILENAMEW question{};
    question.lStructSize = sizeof question;
    question.hwndOwner = owner;
    question.lpstrFilter = kSongFilter;
    question.lpstrFile = names.data();
    question.nMaxFile = static_cast<DWORD>(names.size());
    question.lpstrTitle = L"Open songs";
    question.Flags = OFN_EXPLORER | OFN_ALLOWMULTISELECT | OFN_FILEMUSTEXIST | OFN_HIDEREADONLY |
                     OFN_NOCHANGEDIR;
    return GetOpenFileNameW(&question) == 0 ? std::vector<std::wstring>()
                                            : chosenPaths(names.c_str());
}

std::optional<OutputChoice> askForOutputs(HWND owner, const OutputChoice& before) {
    OutputsQuestion question{outputNames(), before};
    const INT_PTR answer =
        DialogBoxParamW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(IDD_OUTPUTS), owner,
                        outputsDialog, reinterpret_cast<LPARAM>(&question));
    return answer == IDOK ? std::optional(question.choice) : std::nullopt;
}

std::vector<std::wstring> withoutFolders(const std::vector<std::wstring>& paths) {
    std::vector<std::wstring> songs;
    for (const std::wstring& path : paths) {
        std::error_code failed;
        if (!std::filesystem::is_directory(path, failed)) {
            songs.push_back(path);
            continue;
        }
        const auto first = static_cast<std::ptrdiff_t>(songs.size());
        for (const auto& entry : std::filesystem::directory_iterator(path, failed)) {
            if (isSongFile(entry.path())) {
                songs.push_back(entry.path().native());
            }
        }
        std::sort(songs.begin() + first, songs.end());
    }
    return songs;
}

std::vector<std::wstring> droppedSongs(HDROP drop) {
    std::vector<std::wstring> paths;
    const UINT count = DragQueryFileW(drop, 0xFFFFFFFF, nullptr, 0);
    for (UINT i = 0; i < count; ++i) {
        std::wstring path(DragQueryFileW(drop, i, nullptr, 0) + 1, L'\0');
        path.resize(DragQueryFileW(drop, i, path.data(), static_cast<UINT>(path.size())));
        paths.push_back(std::move(path));
    }
    DragFinish(drop);
    return withoutFolders(paths);
}

} // namespace desktop
