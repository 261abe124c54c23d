// Decoding of texts by the system's iconv.
#include <iconv.h>

#include <algorithm>
#include <array>
#include <cerrno>

#include "shared/text_decoder.h"
#include "shared/utf8.h"

namespace host {

namespace {

constexpr const char* kTarget = "UTF-8";
constexpr const char* kFallback = "WINDOWS-1252";
constexpr std::size_t kLongestSource = 16; ///< bytes of an escape sequence and a character
constexpr std::size_t kLongestResult = 32;

bool isOpen(iconv_t handle) {
    return handle != reinterpret_cast<iconv_t>(-1);
}

} // namespace

class TextDecoder::Converter {
public:
    explicit Converter(const std::string& encoding)
        : m_handle(::iconv_open(kTarget, encoding.c_str())) {
        if (!isOpen(m_handle)) {
            m_handle = ::iconv_open(kTarget, kFallback);
        }
    }
    ~Converter() {
        if (isOpen(m_handle)) {
            ::iconv_close(m_handle);
        }
    }
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;

    /// Back to the encoding's first state.
    /// @return a character that was held back until it was known what follows it
    std::string reset() {
        std::array<char, kLongestResult> result{};
        char* to = result.data();
        std::size_t toLeft = result.size();
        ::iconv(m_handle, nullptr, nullptr, &to, &toLeft);
        return {result.data(), to};
    }

    /// Takes as few bytes as make a character.
    DecodedCharacter next(std::string_view bytes) {
        std::array<char, kLongestSource> source{};
        const std::size_t most = std::min(bytes.size(), kLongestSource);
        std::copy_n(bytes.begin(), most, source.begin());
        for (std::size_t length = 1; length <= most; ++length) {
            DecodedCharacter character{{}, 0};
            const Outcome outcome = convert(source.data(), length, character);
            if (outcome == Outcome::Done) {
                return character;
            }
            if (outcome == Outcome::Invalid) {
                return {std::string(kReplacementCharacter), 1};
            }
        }
        const bool cutOff = most == bytes.size();
        return cutOff ? DecodedCharacter{{}, most}
                      : DecodedCharacter{std::string(kReplacementCharacter), 1};
    }

private:
    enum class Outcome { Done, NeedsMore, Invalid };

    Outcome convert(char* source, std::size_t length, DecodedCharacter& character) {
        std::array<char, kLongestResult> result{};
        char* from = source;
        char* to = result.data();
        std::size_t fromLeft = length;
        std::size_t toLeft = result.size();
        const std::size_t answer = ::iconv(m_handle, &from, &fromLeft, &to, &toLeft);
        if (answer == static_cast<std::size_t>(-1) && fromLeft == length) {
            return errno == EINVAL ? Outcome::NeedsMore : Outcome::Invalid;
        }
        character.utf8.assign(result.data(), to);
        character.bytes = length - fromLeft;
        return Outcome::Done;
    }

    iconv_t m_handle;
};

bool TextDecoder::knows(const std::string& encoding) {
    // To iconv an empty name is the locale's encoding.
    const iconv_t handle =
        encoding.empty() ? reinterpret_cast<iconv_t>(-1) : ::iconv_open(kTarget, encoding.c_str());
    if (!isOpen(handle)) {
        return false;
    }
    ::iconv_close(handle);
    return true;
}

TextDecoder::TextDecoder(const std::string& encoding)
    : m_converter(std::make_unique<Converter>(encoding)) {}

TextDecoder::~TextDecoder() = default;

std::vector<DecodedCharacter> TextDecoder::decode(std::string_view bytes) const {
    std::vector<DecodedCharacter> characters;
    m_converter->reset();
    while (!bytes.empty()) {
        characters.push_back(m_converter->next(bytes));
        bytes.remove_prefix(characters.back().bytes);
    }
    if (const std::string heldBack = m_converter->reset(); !heldBack.empty()) {
        characters.back().utf8 += heldBack;
    }
    return characters;
}

} // namespace host
