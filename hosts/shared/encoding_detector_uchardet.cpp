// The encoding that uchardet finds in a song's texts.
#include <uchardet.h>

#include <array>
#include <memory>

#include "shared/encoding_detector.h"
#include "shared/encoding_guess.h"

namespace host {

namespace {

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

} // namespace

std::string detectEncoding(const std::string& bytes) {
    const std::unique_ptr<uchardet, decltype(&uchardet_delete)> detector(uchardet_new(),
                                                                         &uchardet_delete);
    if (uchardet_handle_data(detector.get(), bytes.data(), bytes.size()) != 0) {
        return {};
    }
    uchardet_data_end(detector.get());
    return widened(uchardet_get_charset(detector.get()));
}

} // namespace host
