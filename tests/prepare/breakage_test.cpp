// Songs broken at random, and bytes that never were songs: the preparation survives them, and what it hands
// out opens in the engine.
#include <random>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "corvmo32.h"
#include "corvmo32_linux.h"
#include "tests/prepare/song_files.h"

using host::PreparedSong;
using host::prepareSong;

namespace {

using Random = std::mt19937;

constexpr std::size_t kSmallest = 22; ///< a header and the head of a track

std::size_t below(Random& random, std::size_t limit) {
    return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random);
}

Bytes randomBytes(Random& random, std::size_t count) {
    Bytes bytes(count);
    for (auto& byte : bytes) {
        byte = static_cast<std::uint8_t>(below(random, 256));
    }
    return bytes;
}

/// One piece of damage; most of it small, as transfers and bad writers make it.
void damage(Bytes& file, Random& random) {
    if (file.size() < kSmallest) {
        return;
    }
    const std::size_t at = below(random, file.size());
    const auto place = file.begin() + static_cast<std::ptrdiff_t>(at);
    const std::size_t few = 1 + below(random, std::min<std::size_t>(9, file.size() - at));
    switch (below(random, 7)) {
    case 0:
        *place = static_cast<std::uint8_t>(below(random, 256));
        break;
    case 1:
        *place = static_cast<std::uint8_t>(*place ^ 1u << below(random, 8));
        break;
    case 2:
        file.erase(place, place + static_cast<std::ptrdiff_t>(few));
        break;
    case 3: {
        const Bytes more = randomBytes(random, few);
        file.insert(place, more.begin(), more.end());
        break;
    }
    case 4:
        file.resize(at + 1);
        break;
    case 5: // anything in the header or the head of the first track
        file[below(random, kSmallest)] = static_cast<std::uint8_t>(below(random, 256));
        break;
    default: { // a piece comes twice
        const Bytes piece(place, file.end());
        file.insert(file.end(), piece.begin(), piece.end());
        break;
    }
    }
}

class Breakage : public ::testing::Test {
protected:
    Breakage() {
        corvmo_UseManualClock(0);
        const corvmo_output output{"silent", nullptr, nullptr, nullptr, nullptr,
                                   nullptr,  nullptr, nullptr, nullptr};
        corvmo_SetOutputs(&output, 1);
        InitializeCriticalSection(&m_lock);
        MMINIT settings{};
        settings.timerPeriod = 5;
        settings.flags = MMINIT_SYSEXSTORE;
        settings.lock = &m_lock;
        EXPECT_EQ(mm_InitEngine(&settings, &m_player, nullptr), 1);
    }
    ~Breakage() override {
        mm_Close(m_player);
        mm_EndEngine();
        DeleteCriticalSection(&m_lock);
        corvmo_SetOutputs(nullptr, 0);
        corvmo_UseRealClock();
        removeWrittenFiles();
    }

    bool opens(const Bytes& bytes) {
        const std::string name = writeFile(bytes);
        MMCLICK click{};
        const bool opened = mm_Open(m_player, name.c_str(), 0, 0, 0, &click) == 1;
        mm_Close(m_player);
        removeWrittenFiles();
        return opened;
    }

    /// What holds of every result, whatever was given.
    bool prepare(const Bytes& file) {
        const PreparedSong song = prepareSong(file);
        EXPECT_EQ(song.changed, !song.notes.empty());
        EXPECT_EQ(song.bytes.empty(), !song.error.empty());
        EXPECT_LE(song.bytes.size(), 3 * file.size() + 100);
        if (!song.error.empty()) {
            return false;
        }
        EXPECT_TRUE(opens(song.bytes));
        const PreparedSong again = prepareSong(song.bytes);
        EXPECT_THAT(again.notes, testing::ElementsAre());
        EXPECT_EQ(again.bytes, song.bytes);
        return true;
    }

    CRITICAL_SECTION m_lock{};
    HMIDIOUT m_player = nullptr;
};

} // namespace

TEST_F(Breakage, Whatever_happened_to_a_song_the_result_opens) {
    int mended = 0;
    for (const std::string& name : ownSongFiles()) {
        const Bytes song = readFile(name);
        for (unsigned seed = 0; seed < 300; ++seed) {
            SCOPED_TRACE(name + ", seed " + std::to_string(seed));
            Random random(seed);
            Bytes file = song;
            for (unsigned i = 0; i <= seed % 8; ++i) {
                damage(file, random);
            }
            mended += prepare(file) ? 1 : 0;
            if (HasFailure()) {
                return;
            }
        }
    }
    EXPECT_GT(mended, 300 * 3 * 4 / 5);
}

TEST_F(Breakage, Bytes_of_any_kind_are_survived) {
    const Bytes head = header(1, 9, 2000);
    for (unsigned seed = 0; seed < 400; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        Random random(seed);
        Bytes track;
        // Bytes that steer a reader come often.
        static constexpr std::array<std::uint8_t, 12> kSteering{0x00, 0x90, 0x80, 0xF0, 0xF7, 0xFF,
                                                                0x2F, 0x51, 0x7F, 'M',  0xF8, 0x03};
        for (std::size_t i = 0, size = below(random, 3000); i < size; ++i) {
            const bool steers = below(random, 2) == 0;
            track.push_back(steers ? kSteering[below(random, kSteering.size())]
                                   : static_cast<std::uint8_t>(below(random, 256)));
        }
        prepare(head + chunk("MTrk", track) + chunk("MTrk", track, 5));
        prepare(head + track);
        prepare(track.empty() ? head : track);
    }
}

TEST_F(Breakage, Files_made_to_wear_out_a_reader_are_done_with_at_once) {
    constexpr std::size_t kSize = 4000000;
    const auto repeated = [](const Bytes& begin, const Bytes& piece) {
        Bytes file = begin;
        while (file.size() < kSize) {
            file.insert(file.end(), piece.begin(), piece.end());
        }
        return file;
    };
    const Bytes wrapping{'R', 'I', 'F', 'F', 0xFF, 0xFF, 0xFF, 0x7F, 'R',  'M',
                         'I', 'D', 'd', 'a', 't',  'a',  0xFF, 0xFF, 0xFF, 0x7F};
    const Bytes head = header(1, 65535, 32767);
    prepare(repeated({}, wrapping));
    prepare(repeated(head, chunk("MTrk", {})));
    prepare(repeated(head, chunk("MTrk", {}, 0xFFFFFFFF)));
    prepare(repeated(head, chunk("MTrk", {0x00, 0x90, 0x3C})));
    prepare(repeated(head, chunk("JUNK", {})));
    prepare(repeated(head + chunk("MTrk", {}, 0x7FFFFFFF), {0x00, 0xF0, 0x00}));
    prepare(repeated(head + chunk("MTrk", {}, 0x7FFFFFFF), {0x00, 0xF4}));
    prepare(repeated(head + chunk("MTrk", {}, 0x7FFFFFFF),
                     {0x01, 0x90, 0x3C, 0x40, 0x01, 0x80, 0x3C, 0x40}));
    prepare(repeated(head + chunk("MTrk", {}, 0x7FFFFFFF), {0xFF}));
}

TEST_F(Breakage, Every_song_there_is_opens_once_prepared) {
    for (const std::string& name : songFiles()) {
        SCOPED_TRACE(name);
        EXPECT_TRUE(prepare(readFile(name)));
    }
}
