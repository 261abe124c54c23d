// The encodings of texts that a listener can choose, where guessing goes wrong.
#pragma once

#include <array>

namespace desktop {

struct EncodingChoice {
    const wchar_t* label;
    const char* name; ///< as host::TextDecoder knows it; empty = guessed
};

inline constexpr std::array<EncodingChoice, 12> kEncodings = {{
    {L"&Guess", ""},
    {L"&UTF-8", "UTF-8"},
    {L"&Western European", "WINDOWS-1252"},
    {L"Central &European", "WINDOWS-1250"},
    {L"C&yrillic (Windows)", "WINDOWS-1251"},
    {L"Cyrillic (&KOI8-R)", "KOI8-R"},
    {L"G&reek", "WINDOWS-1253"},
    {L"&Japanese", "CP932"},
    {L"K&orean", "UHC"},
    {L"&Simplified Chinese", "CP936"},
    {L"&Traditional Chinese", "BIG5"},
    {L"T&hai", "CP874"},
}};

} // namespace desktop
