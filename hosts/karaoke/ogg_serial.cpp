// The serial number of an Ogg file.
#include "karaoke/ogg_serial.h"

#include <ogg/ogg.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <string>

#include "shared/error_texts.h"

namespace karaoke {

namespace {

constexpr long kBlock = 65536;
constexpr std::size_t kSerialOffset = 14;
constexpr std::array<unsigned char, 4> kSerial = {'k', 'a', 'r', 'a'};

[[noreturn]] void fail() {
    throw host::HostError(std::string("the sound file cannot be written: ") + std::strerror(errno));
}

/// Pages as they lie in a file.
class Pages {
public:
    explicit Pages(int descriptor) : m_descriptor(descriptor) {
        ogg_sync_init(&m_sync);
    }
    ~Pages() {
        ogg_sync_clear(&m_sync);
    }
    Pages(const Pages&) = delete;
    Pages& operator=(const Pages&) = delete;

    /// False at the end of the file.
    bool next(ogg_page& page) {
        while (ogg_sync_pageout(&m_sync, &page) != 1) {
            if (!readOn()) {
                return false;
            }
        }
        m_begin = m_end;
        m_end += page.header_len + page.body_len;
        return true;
    }
    /// Where the last page begins in the file.
    off_t begin() const {
        return m_begin;
    }

private:
    bool readOn() {
        char* const buffer = ogg_sync_buffer(&m_sync, kBlock);
        const ssize_t count = ::pread(m_descriptor, buffer, kBlock, m_read);
        if (count < 0) {
            fail();
        }
        m_read += count;
        ogg_sync_wrote(&m_sync, static_cast<long>(count));
        return count > 0;
    }

    int m_descriptor;
    ogg_sync_state m_sync{};
    off_t m_read = 0;
    off_t m_begin = 0;
    off_t m_end = 0;
};

} // namespace

void setOggSerial(int descriptor) {
    Pages pages(descriptor);
    for (ogg_page page{}; pages.next(page);) {
        std::copy(kSerial.begin(), kSerial.end(), page.header + kSerialOffset);
        ogg_page_checksum_set(&page);
        if (::pwrite(descriptor, page.header, static_cast<std::size_t>(page.header_len),
                     pages.begin()) != page.header_len) {
            fail();
        }
    }
}

} // namespace karaoke
