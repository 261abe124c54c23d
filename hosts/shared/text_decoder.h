// Turns the bytes of a song's texts into UTF-8, character by character, so that a caller knows which bytes
// each character was made of. The part that asks the system is one file a platform.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace host {

/// One character and the bytes that it stands for.
struct DecodedCharacter {
    std::string utf8;  ///< may be empty: an escape sequence of the encoding
    std::size_t bytes; ///< length of its source
};

/// Decodes texts of one encoding. One object serves one thread.
class TextDecoder {
public:
    /// Whether the system knows an encoding of that name.
    static bool knows(const std::string& encoding);

    /// @param encoding  a name that knows() accepts; any other decodes as Windows-1252
    explicit TextDecoder(const std::string& encoding);
    ~TextDecoder();
    TextDecoder(const TextDecoder&) = delete;
    TextDecoder& operator=(const TextDecoder&) = delete;

    /// Bytes that are no character become the replacement character; a character that is cut off at the
    /// end is left out, but its bytes are counted.
    std::vector<DecodedCharacter> decode(std::string_view bytes) const;

    /// The whole text for showing: without control characters.
    std::string text(std::string_view bytes) const;

private:
    class Converter;
    std::unique_ptr<Converter> m_converter;
};

} // namespace host
