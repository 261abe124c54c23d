// The engine on the real timer while other threads of the host call it. Meant for the thread sanitizer as
// much as for its own checks.
#include <atomic>
#include <random>
#include <thread>

#include "tests/support/engine_test.h"
#include "tests/whole/random_song.h"

using ::testing::IsEmpty;

namespace {

using Call = void (*)(HMIDIOUT player, std::int16_t channel, std::int16_t value);

/// What a host may call at any time, also while another thread opens or closes the player.
constexpr Call kSettings[] = {
    [](HMIDIOUT player, std::int16_t channel, std::int16_t value) {
        mm_SetVolume(player, channel, value);
        mm_SetBalance(player, channel, value);
        mm_SetReverb(player, channel, value);
        mm_SetChorus(player, channel, value);
        mm_SetVelocity(player, channel, value);
    },
    [](HMIDIOUT player, std::int16_t channel, std::int16_t value) {
        mm_SetNoTranspose(player, channel, value);
        mm_SetMute(player, channel, value % 2, 1);
        mm_SetKeyShift(player, channel, value, 1);
    },
    [](HMIDIOUT player, std::int16_t, std::int16_t value) {
        mm_SetTranspose(player, value, 1);
        mm_SetMasterTranspose(value);
    },
    [](HMIDIOUT player, std::int16_t channel, std::int16_t value) {
        const MMPATCH patch{value, 1, value % 2 == 0 ? value : std::int16_t{MMPATCH_NO_OVERRIDE},
                            1};
        mm_SetPatch(player, channel, &patch);
        const MMNOTEPAIR pairs[10] = {{36, 38}};
        mm_SetReplaceNotes(player, channel, pairs, 1);
    },
    [](HMIDIOUT player, std::int16_t channel, std::int16_t value) {
        mm_SetChannelDevice(player, channel, value & 1, 1);
        mm_SetChannelOut(player, channel, value & 15, 1);
    },
    [](HMIDIOUT player, std::int16_t, std::int16_t value) {
        mm_SetOptions(player, value & kAllOptions);
        mm_SetWindow(mm_GetWindow());
        mm_SetNumLyrics(player, value);
        mm_SetNumChords(player, value);
    },
    [](HMIDIOUT player, std::int16_t, std::int16_t value) {
        MMFADE fade{};
        fade.segmentEnd[4] = 50;
        fade.base[4] = 1000 * value;
        value % 2 == 0 ? mm_SetFadeIn(player, &fade) : mm_SetFadeOut(player, &fade);
    },
    [](HMIDIOUT player, std::int16_t, std::int16_t) {
        mm_GetUnits(player);
        mm_GetTempo(player);
        mm_GetTicks(player);
        mm_GetNumEvents(player);
        mm_GetPointerEvents(player, 0);
        mm_GetNumLyrics(player);
        mm_GetPointerLyrics(player, 0);
        mm_GetNumChords(player);
        mm_GetPointerChords(player, 0);
        mm_GetNumMarkers(player);
        mm_GetPointerMarkers(player, 0);
    },
};

/// What else it may call while the player's song plays, but for what moves the position.
constexpr Call kTransport[] = {
    [](HMIDIOUT player, std::int16_t, std::int16_t value) {
        mm_SetTempo(player, 400000, static_cast<float>(value));
        mm_SetLoop(player, nullptr);
        mm_SetNextLocator(player, MMLOCATOR_KEEP_END, MMLOCATOR_NO_NEXT);
    },
    [](HMIDIOUT player, std::int16_t, std::int16_t value) {
        mm_CreateMap(player, static_cast<std::uint32_t>(value));
        mm_PauseSync(player);
        mm_ReStartSync(player);
    },
    [](HMIDIOUT player, std::int16_t channel, std::int16_t value) {
        const std::uint8_t message[] = {0xF0, 0x7D, 0xF7};
        mm_LongMessage(player, message, sizeof message);
        mm_ShortMessage(player, 0xFE);
        mm_SetMIDIVolume(player, channel, value);
        const std::int16_t patch[] = {0, 0, value};
        mm_SetMIDIPatch(player, channel, patch);
        mm_Reset(player);
    },
};

constexpr int kMessages = 600;
constexpr std::uint32_t kSpacing = 3; ///< ticks; the whole takes about two seconds

/// Messages of a kind that carry running numbers, between notes and system-exclusive messages.
SongBuilder numbered(int kind) {
    SongBuilder song;
    TrackBuilder& track = song.track();
    for (int i = 0; i < kMessages; ++i) {
        track.at(static_cast<std::uint32_t>(i) * kSpacing).event({kind | i % 16, i >> 7, i & 0x7F});
        track.event({(i & 1) == 0 ? 0x90 : 0x80, 60 + i / 2 % 12, 100}).controller(2, 10, i & 0x7F);
        if (i % 50 == 0) {
            track.systemExclusive({0x7D, 0x01}).program(1, i % 128).tempo(500000);
        }
    }
    track.at(kMessages * kSpacing + 48).noteOff(0, 0);
    return song;
}

} // namespace

class RealTime : public EngineTest {
protected:
    RealTime() {
        realTime = true;
        settings.timerPeriod = 1;
    }

    /// Waits until a player's song has ended.
    static bool waitForEnd(HMIDIOUT player) {
        for (;;) {
            const std::optional<Posted> end = machine::waitFor(MMN_END);
            if (!end || end->wParam == reinterpret_cast<WPARAM>(player)) {
                return end.has_value();
            }
        }
    }

    /// Calls at random until the song is over, and sees the position never go back.
    void disturb(const std::atomic<bool>& over) {
        std::mt19937 random(1);
        std::uint32_t position = 0;
        while (!over) {
            const auto channel = static_cast<std::int16_t>(anyOf(random, 0, 15));
            const auto value = static_cast<std::int16_t>(anyOf(random, 0, 60));
            if (anyOf(random, 0, 3) == 0) {
                kTransport[random() % std::size(kTransport)](mm1, channel, value);
            } else {
                const HMIDIOUT player = anyOf(random, 0, 1) == 0 ? mm1 : mm2;
                kSettings[random() % std::size(kSettings)](player, channel, value);
            }
            const std::uint32_t now = mm_GetTicks(mm1);
            EXPECT_GE(now, position);
            position = now;
            std::this_thread::yield();
        }
    }

    /// Opens, plays, moves and closes a song on the second player again and again.
    void playOther(const std::string& file, const std::atomic<bool>& over) {
        std::mt19937 random(2);
        while (!over) {
            EXPECT_EQ(mm_Open(mm2, file.c_str(), MMOPT_LYRICS, 0, 0, nullptr), 1);
            EXPECT_EQ(mm_PlayFirstNote(mm2), 1);
            mm_StartSync(mm2);
            for (int i = anyOf(random, 0, 20); i > 0; --i) {
                const auto tick = static_cast<std::uint32_t>(anyOf(random, 0, 1500));
                mm_SetNextLocator(mm2, tick, tick + 100);
                mm_CreateMap(mm2, tick);
                mm_SendMap(mm2, tick);
                std::this_thread::yield();
            }
            mm_StopSync(mm2);
            mm_RewindSync(mm2);
            mm_Close(mm2);
        }
    }
};

TEST_F(RealTime, A_song_plays_whole_while_settings_change_and_another_song_comes_and_goes) {
    start();
    play(numbered(0xA0));
    const std::string other = numbered(0xE0).write();
    std::atomic<bool> over{false};
    std::thread disturbing([this, &over] { disturb(over); });
    std::thread playing([this, &other, &over] { playOther(other, over); });
    EXPECT_TRUE(waitForEnd(mm1));
    over = true;
    disturbing.join();
    playing.join();
    mm_Close(mm1);
    int arrived = 0;
    for (const Sent& sent : history()) {
        if ((sent.bytes[0] & 0xF0) == 0xA0) {
            ASSERT_EQ(sent.bytes[1] << 7 | sent.bytes[2], arrived++);
        }
    }
    EXPECT_EQ(arrived, kMessages);
    EXPECT_THAT(stillSounding(history()), IsEmpty());
}

TEST_F(RealTime, Songs_opened_at_the_same_time_keep_their_words_apart) {
    constexpr int kSyllables = 60;
    start();
    const auto file = [](char letter) {
        SongBuilder song;
        TrackBuilder& track = song.track();
        track.karaoke(0).karaoke(4, std::string(kSyllables, letter)).controller(0, 31, 127);
        for (int i = 0; i <= kSyllables; ++i) {
            track.at(static_cast<std::uint32_t>(i)).controller(0, 31, i);
        }
        track.noteOn(0, 60);
        return song.write();
    };
    const auto openOften = [](HMIDIOUT player, const std::string& name, char letter) {
        for (int i = 0; i < 50; ++i) {
            ASSERT_EQ(mm_Open(player, name.c_str(), 0, 0, 0, nullptr), 1);
            ASSERT_EQ(mm_GetNumLyrics(player), 1 + kSyllables);
            for (std::int16_t lyric = 1; lyric <= kSyllables; ++lyric) {
                ASSERT_EQ(mm_GetPointerLyrics(player, lyric)->text, std::string(1, letter));
            }
        }
    };
    const std::string first = file('a');
    const std::string second = file('b');
    std::thread other([&] { openOften(mm2, second, 'b'); });
    openOften(mm1, first, 'a');
    other.join();
}

TEST_F(RealTime, Two_songs_keep_the_timers_pace) {
    start();
    SongBuilder song(100);
    song.track().noteOn(0, 60).at(100).noteOn(0, 61).at(110).noteOff(0, 0);
    const std::string file = song.write();
    for (HMIDIOUT player : {mm1, mm2}) {
        ASSERT_EQ(mm_Open(player, file.c_str(), 0, 0, 0, nullptr), 1);
        mm_StartSync(player);
    }
    EXPECT_TRUE(waitForEnd(mm2));
    for (const int output : {0, 1}) {
        std::vector<std::uint64_t> times;
        for (const Sent& sent : history()) {
            if (sent.output == output && sent.bytes[0] == 0x90) {
                times.push_back(sent.time);
            }
        }
        ASSERT_EQ(times.size(), 2U);
        EXPECT_GE(times[1] - times[0], 450000U) << "a quarter note of half a second";
    }
}
