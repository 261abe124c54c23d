// The bytes of a file, seen with care: what lies beyond their end reads as 0.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <string_view>

namespace host {

constexpr std::size_t kTagSize = 4;
constexpr std::size_t kChunkHeadSize = 8; ///< tag and length
constexpr std::string_view kHeaderTag = "MThd";
constexpr std::string_view kTrackTag = "MTrk";

class ByteView {
public:
    explicit ByteView(std::span<const std::uint8_t> bytes) : m_bytes(bytes) {}

    std::size_t size() const {
        return m_bytes.size();
    }
    std::uint8_t operator[](std::size_t position) const {
        return position < m_bytes.size() ? m_bytes[position] : std::uint8_t{0};
    }
    /// A number of 1 to 4 bytes, most significant byte first.
    std::uint32_t number(std::size_t position, std::size_t width) const {
        std::uint32_t value = 0;
        for (std::size_t i = 0; i < width; ++i) {
            value = value << 8 | (*this)[position + i];
        }
        return value;
    }
    /// The same with the least significant byte first.
    std::uint32_t littleEndian(std::size_t position, std::size_t width) const {
        std::uint32_t value = 0;
        for (std::size_t i = width; i-- > 0;) {
            value = value << 8 | (*this)[position + i];
        }
        return value;
    }
    bool hasTag(std::size_t position, std::string_view tag) const {
        return position <= size() && tag.size() <= size() - position &&
               std::equal(tag.begin(), tag.end(), m_bytes.data() + position,
                          [](char a, auto b) { return static_cast<std::uint8_t>(a) == b; });
    }
    /// Where a tag stands next, at or behind a position and wholly before end; end = nowhere.
    std::size_t find(std::string_view tag, std::size_t from, std::size_t end) const {
        end = std::min(end, size());
        if (from >= end) {
            return end;
        }
        const auto begin = m_bytes.begin();
        const auto found =
            std::search(begin + static_cast<std::ptrdiff_t>(from),
                        begin + static_cast<std::ptrdiff_t>(end), tag.begin(), tag.end(),
                        [](std::uint8_t a, char b) { return a == static_cast<std::uint8_t>(b); });
        return static_cast<std::size_t>(found - begin);
    }
    /// Cut to what there is.
    std::span<const std::uint8_t> part(std::size_t begin, std::size_t end) const {
        end = std::min(end, size());
        begin = std::min(begin, end);
        return m_bytes.subspan(begin, end - begin);
    }
    /// Where something ends that begins at a position and claims a length; the sum may lie anywhere.
    static std::uint64_t endOf(std::size_t begin, std::uint32_t length) {
        return std::uint64_t{begin} + length;
    }

private:
    std::span<const std::uint8_t> m_bytes;
};

} // namespace host
