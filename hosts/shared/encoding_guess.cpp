// Which encoding a song's texts are in: UTF-8 shows itself, the others are guessed from all texts together.
#include "shared/encoding_guess.h"

#include <algorithm>

#include "shared/encoding_detector.h"
#include "shared/text_decoder.h"
#include "shared/utf8.h"

namespace host {

namespace {

constexpr std::size_t kEnoughHighBytes = 6; ///< with fewer a guess is mere chance

bool isHigh(char byte) {
    return static_cast<unsigned char>(byte) >= 0x80;
}

bool allUtf8(const std::vector<std::string>& texts) {
    return std::all_of(texts.begin(), texts.end(),
                       [](const std::string& text) { return isUtf8(withoutBrokenTail(text)); });
}

bool decodesWhole(const std::string& bytes, const std::string& encoding) {
    const std::string text = TextDecoder(encoding).text(bytes);
    return text.find(kReplacementCharacter) == std::string::npos;
}

} // namespace

std::string guessEncoding(const std::vector<std::string>& texts) {
    if (allUtf8(texts)) {
        return kUtf8;
    }
    std::string together;
    for (const std::string& text : texts) {
        together += text;
        together += '\n';
    }
    const auto highBytes =
        static_cast<std::size_t>(std::count_if(together.begin(), together.end(), isHigh));
    if (highBytes < kEnoughHighBytes) {
        return kWesternEuropean;
    }
    const std::string guess = detectEncoding(together);
    const bool trusted = TextDecoder::knows(guess) && decodesWhole(together, guess);
    return trusted ? guess : kWesternEuropean;
}

} // namespace host
