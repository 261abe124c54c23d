// Which encoding a song's texts are in: UTF-8 shows itself, the others are guessed by uchardet.
#include "shared/encoding_guess.h"

#include <uchardet.h>

#include <algorithm>
#include <array>
#include <memory>

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

std::string detected(const std::string& bytes) {
    const std::unique_ptr<uchardet, decltype(&uchardet_delete)> detector(uchardet_new(),
                                                                         &uchardet_delete);
    if (uchardet_handle_data(detector.get(), bytes.data(), bytes.size()) != 0) {
        return {};
    }
    uchardet_data_end(detector.get());
    return uchardet_get_charset(detector.get());
}

/// The encoding that files of the kind are really written in, where the detector names its plainer form.
std::string widened(const std::string& encoding) {
    constexpr std::array<std::array<const char*, 2>, 6> kWider = {{
        {"SHIFT_JIS", "CP932"},
        {"EUC-KR", "UHC"},
        {"GB2312", "GB18030"},
        {"ISO-8859-1", kWesternEuropean},
        {"ISO-8859-15", kWesternEuropean},
        {"ASCII", kWesternEuropean},
    }};
    for (const auto& [narrow, wide] : kWider) {
        if (encoding == narrow) {
            return wide;
        }
    }
    return encoding;
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
    const std::string guess = widened(detected(together));
    const bool trusted = TextDecoder::knows(guess) && decodesWhole(together, guess);
    return trusted ? guess : kWesternEuropean;
}

} // namespace host
