// What decoding a text for display means on every platform.
#include "shared/text_decoder.h"

#include "shared/utf8.h"

namespace host {

std::string TextDecoder::text(std::string_view bytes) const {
    std::string text;
    for (const DecodedCharacter& character : decode(bytes)) {
        text += character.utf8;
    }
    return withoutControls(text);
}

} // namespace host
