// Decoding of texts by the code pages of Windows.
#include <windows.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <optional>

#include "shared/text_decoder.h"
#include "shared/utf8.h"
#include "shared/wide_text.h"

namespace host {

namespace {

constexpr UINT kFallback = 1252;
constexpr UINT kFirstIsoLatin = 28590; ///< ISO-8859-n is the code page of this number and n
constexpr std::size_t kLongestSource = 4;
constexpr wchar_t kFirstHighControl = 0x80;
constexpr wchar_t kLastHighControl = 0x9F;

struct NamedPage {
    std::string_view name;
    UINT page;
};

/// Names that do not carry the number of their code page.
constexpr std::array<NamedPage, 12> kNamedPages = {{
    {"UTF-8", CP_UTF8},
    {"UTF8", CP_UTF8},
    {"SHIFT_JIS", 932},
    {"EUC-JP", 20932},
    {"GBK", 936},
    {"GB2312", 936},
    {"GB18030", 54936},
    {"EUC-KR", 949},
    {"UHC", 949},
    {"BIG5", 950},
    {"KOI8-R", 20866},
    {"KOI8-U", 21866},
}};

std::optional<UINT> numberAfter(std::string_view name, std::string_view prefix) {
    if (!name.starts_with(prefix)) {
        return std::nullopt;
    }
    UINT number = 0;
    const char* const end = name.data() + name.size();
    const auto read = std::from_chars(name.data() + prefix.size(), end, number);
    if (read.ec != std::errc{} || read.ptr != end) {
        return std::nullopt;
    }
    return number;
}

std::optional<UINT> namedPage(const std::string& encoding) {
    std::string name = encoding;
    std::transform(name.begin(), name.end(), name.begin(),
                   [](unsigned char letter) { return static_cast<char>(std::toupper(letter)); });
    for (const NamedPage& known : kNamedPages) {
        if (name == known.name) {
            return known.page;
        }
    }
    if (const auto latin = numberAfter(name, "ISO-8859-")) {
        return kFirstIsoLatin + *latin;
    }
    for (const std::string_view prefix : {"WINDOWS-", "CP"}) {
        if (const auto number = numberAfter(name, prefix)) {
            return number;
        }
    }
    return std::nullopt;
}

/// The code page of a name, where this Windows has it.
std::optional<UINT> pageOf(const std::string& encoding) {
    const std::optional<UINT> page = namedPage(encoding);
    // Pages of which a character cannot be told from its bytes alone (ISO-2022) are not among the names.
    return page && IsValidCodePage(*page) != 0 ? page : std::nullopt;
}

} // namespace

class TextDecoder::Converter {
public:
    explicit Converter(UINT page) : m_page(page) {}

    /// Takes as few bytes as make a character.
    DecodedCharacter next(std::string_view bytes) const {
        const std::size_t most = std::min(bytes.size(), kLongestSource);
        for (std::size_t length = 1; length <= most; ++length) {
            if (const auto utf8 = characterOf(bytes.substr(0, length))) {
                return {*utf8, length};
            }
        }
        const bool cutOff = isCutOff(bytes);
        return cutOff ? DecodedCharacter{{}, bytes.size()}
                      : DecodedCharacter{std::string(kReplacementCharacter), 1};
    }

private:
    std::optional<std::string> characterOf(std::string_view bytes) const {
        if (m_page == CP_UTF8) {
            return utf8CharacterLength(bytes, 0) == bytes.size() ? std::optional<std::string>(bytes)
                                                                 : std::nullopt;
        }
        if (bytes.size() == 1 && isLead(bytes.front())) {
            return std::nullopt;
        }
        std::array<wchar_t, kLongestSource> wide{};
        const int length = MultiByteToWideChar(m_page, MB_ERR_INVALID_CHARS, bytes.data(),
                                               static_cast<int>(bytes.size()), wide.data(),
                                               static_cast<int>(wide.size()));
        const bool meansNothing = wide[0] >= kFirstHighControl && wide[0] <= kLastHighControl;
        if (length <= 0 || meansNothing) {
            return std::nullopt;
        }
        return toUtf8({wide.data(), static_cast<std::size_t>(length)});
    }

    bool isLead(char byte) const {
        return IsDBCSLeadByteEx(m_page, static_cast<BYTE>(byte)) != 0;
    }

    bool isCutOff(std::string_view bytes) const {
        if (m_page == CP_UTF8) {
            return withoutBrokenTail(bytes).empty();
        }
        return bytes.size() == 1 && isLead(bytes.front());
    }

    UINT m_page;
};

bool TextDecoder::knows(const std::string& encoding) {
    return pageOf(encoding).has_value();
}

TextDecoder::TextDecoder(const std::string& encoding)
    : m_converter(std::make_unique<Converter>(pageOf(encoding).value_or(kFallback))) {}

TextDecoder::~TextDecoder() = default;

std::vector<DecodedCharacter> TextDecoder::decode(std::string_view bytes) const {
    std::vector<DecodedCharacter> characters;
    while (!bytes.empty()) {
        characters.push_back(m_converter->next(bytes));
        bytes.remove_prefix(characters.back().bytes);
    }
    return characters;
}

} // namespace host
