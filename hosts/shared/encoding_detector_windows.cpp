// The encoding of a song's texts on Windows: of the usual ones that in which the commonest letters of its
// language come up as often as they should, else the system's own, which serves most other songs of a listener.
#include <windows.h>

#include <algorithm>
#include <array>
#include <string_view>

#include "shared/encoding_detector.h"
#include "shared/text_decoder.h"
#include "shared/utf8.h"
#include "shared/wide_text.h"

namespace host {

namespace {

constexpr double kLikely = 0.6; ///< of the usual share; what other languages' bytes rarely reach

struct Candidate {
    const char* encoding;
    std::wstring_view common; ///< letters of the language that songs use most
    double usualShare;        ///< of these among all letters beyond ASCII
};

constexpr std::wstring_view kKana = L"あいうえおかがきぎくけげこごさしすずせそただちっつてでとどな"
                                    L"にぬねのはばひびふへほまみむめもやゆよ"
                                    L"らりるれろわをんアイウエオカキクコサシスセソタチツテトナニノ"
                                    L"ハヒフホマミメモヤラリルレロワンー";
constexpr std::wstring_view kHangul =
    L"이가나는다을를의에고도지하사랑그대내너해어은면로만서한날기아마"
    L"네수니리자있없게라";
constexpr std::wstring_view kSimplified =
    L"的我你是不了在一爱有人心里想到天这那没为来会都就多能要去说什么谁得过让看自己无情";
constexpr std::wstring_view kTraditional =
    L"的我你是不了在一愛有人心裡想到天這那沒為來會都就多能要去說什麼誰得過讓看自己無情";
constexpr std::wstring_view kCyrillic = L"оеаинтсрлв";

constexpr std::array<Candidate, 9> kCandidates = {{
    {"CP932", kKana, 0.6},
    {"EUC-JP", kKana, 0.6},
    {"UHC", kHangul, 0.35},
    {"CP936", kSimplified, 0.3},
    {"BIG5", kTraditional, 0.3},
    {"WINDOWS-1251", kCyrillic, 0.65},
    {"KOI8-R", kCyrillic, 0.65},
    {"CP866", kCyrillic, 0.65},
    {"ISO-8859-5", kCyrillic, 0.65},
}};

bool isHigh(char byte) {
    return static_cast<unsigned char>(byte) >= 0x80;
}

/// In the Latin scripts letters beyond ASCII stand alone among others.
bool highBytesStandAlone(const std::string& bytes) {
    std::size_t together = 0;
    std::size_t all = 0;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (isHigh(bytes[i])) {
            const bool before = i > 0 && isHigh(bytes[i - 1]);
            const bool after = i + 1 < bytes.size() && isHigh(bytes[i + 1]);
            together += before || after ? 1 : 0;
            ++all;
        }
    }
    return together * 2 < all;
}

/// How well an encoding explains the bytes: 1 = as usual for its language; 0 = not at all.
double likelihood(const Candidate& candidate, const std::string& bytes) {
    if (!TextDecoder::knows(candidate.encoding)) {
        return 0;
    }
    const std::string text = TextDecoder(candidate.encoding).text(bytes);
    if (text.find(kReplacementCharacter) != std::string::npos) {
        return 0;
    }
    const std::wstring wide = toWide(text);
    const auto letters =
        std::count_if(wide.begin(), wide.end(), [](wchar_t letter) { return letter >= L'\x80'; });
    const auto common = std::count_if(wide.begin(), wide.end(), [&](wchar_t letter) {
        return candidate.common.find(letter) != std::wstring_view::npos;
    });
    return letters == 0
               ? 0
               : static_cast<double>(common) / static_cast<double>(letters) / candidate.usualShare;
}

std::string systemEncoding() {
    return "CP" + std::to_string(GetACP());
}

} // namespace

std::string detectEncoding(const std::string& bytes) {
    if (highBytesStandAlone(bytes)) {
        return systemEncoding();
    }
    std::string best = systemEncoding();
    double highest = kLikely;
    for (const Candidate& candidate : kCandidates) {
        if (const double found = likelihood(candidate, bytes); found > highest) {
            highest = found;
            best = candidate.encoding;
        }
    }
    return best;
}

} // namespace host
