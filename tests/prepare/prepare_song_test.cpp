// Each kind of defect, mended: what comes out is the song that was broken, byte for byte.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/prepare/song_files.h"

using host::PreparedSong;
using host::prepareSong;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::SizeIs;

namespace {

constexpr std::size_t kTrackAt = 22; ///< first event of a file's first track
constexpr std::uint32_t kEndless = 0xFFFFFFFF;

void expectUntouched(const Bytes& file) {
    const PreparedSong song = prepareSong(file);
    EXPECT_FALSE(song.changed);
    EXPECT_EQ(song.bytes, file);
    EXPECT_THAT(song.notes, SizeIs(0));
    EXPECT_EQ(song.error, "");
}

/// The one note is the one expected; an empty one stands for any number of any notes.
void expectMended(const Bytes& file, const Bytes& intact, const std::string& note = "") {
    const PreparedSong song = prepareSong(file);
    EXPECT_EQ(song.error, "");
    EXPECT_TRUE(song.changed);
    EXPECT_EQ(song.bytes, intact);
    if (note.empty()) {
        EXPECT_FALSE(song.notes.empty());
    } else {
        EXPECT_THAT(song.notes, ElementsAre(HasSubstr(note)));
    }
}

/// A track whose events never share a status, so that there is one way to write it.
Bytes melody(int channel, int key) {
    TrackBuilder track;
    track.text("melody").program(channel, 5);
    for (int i = 0; i < 12; ++i) {
        track.note(channel, key + i, 90);
    }
    return track.data() + kEnd;
}

Bytes threeTracks() {
    return header(1, 3, 480) + chunk("MTrk", melody(0, 40)) + chunk("MTrk", melody(1, 50)) +
           chunk("MTrk", melody(2, 60));
}

Bytes oneTrack(const Bytes& events) {
    return header(0, 1, 96) + chunk("MTrk", events);
}

Bytes littleEndian(std::size_t size) {
    const auto number = static_cast<int>(size);
    return bytesOf({number & 0xFF, number >> 8 & 0xFF, number >> 16 & 0xFF, number >> 24 & 0xFF});
}

Bytes riff(const std::string& kind, const Bytes& contents) {
    return Bytes{'R', 'I', 'F', 'F'} + littleEndian(contents.size() + 4) +
           Bytes(kind.begin(), kind.end()) + contents;
}

Bytes riffChunk(const std::string& tag, const Bytes& data) {
    return Bytes(tag.begin(), tag.end()) + littleEndian(data.size()) + data +
           Bytes(data.size() & 1);
}

Bytes noteOn(int key) {
    return bytesOf({0x00, 0x90, key, 0x64});
}

/// A system-exclusive event or a part of one, with no delay.
Bytes exclusive(int status, const Bytes& data) {
    return bytesOf({0x00, status}) + variableLength(static_cast<std::uint32_t>(data.size())) + data;
}

} // namespace

TEST(Preparation, Leaves_a_sound_song_as_it_is) {
    for (const std::string& name : ownSongFiles()) {
        SCOPED_TRACE(name);
        expectUntouched(readFile(name));
    }
    expectUntouched(threeTracks());
    expectUntouched(threeTracks() + Bytes(40, 0) + bytesOf({'e', 'n', 'd'}));
    expectUntouched(threeTracks() + chunk("XFIH", Bytes(9, 1)));
    expectUntouched(threeTracks() + threeTracks());
    expectUntouched(threeTracks() + Bytes(40, 0) + chunk("MTrk", melody(3, 70)));
    expectUntouched(oneTrack(noteOn(60) + kEnd + noteOn(61)) + Bytes(9, 0xEE));
    Bytes most = header(1, 127, 960);
    for (int i = 0; i < 127; ++i) {
        most = most + chunk("MTrk", noteOn(i) + kEnd);
    }
    expectUntouched(most);
    // Running status over other events, an early end of track, a chunk's tag in a text, odd messages.
    expectUntouched(oneTrack(noteOn(60) + bytesOf({0x00, 0xFF, 0x01, 0x00, 0x10, 0x3C, 0x00}) +
                             kEnd + noteOn(61) + kEnd));
    expectUntouched(oneTrack(
        bytesOf({0, 0xFF, 1, 16, 'M', 'T', 'r', 'k', 0, 0, 0, 4, 0, 0xC0, 1, 0, 0xC0, 2, 0, 0xC0}) +
        kEnd));
    expectUntouched(
        oneTrack(exclusive(0xF7, {0x43, 0xF7}) + bytesOf({0, 0xF2, 1, 2, 0, 0xF8}) + kEnd));
}

TEST(Preparation, Takes_a_song_out_of_what_surrounds_it) {
    const Bytes song = threeTracks();
    const Bytes info = riffChunk("LIST", Bytes(33, 'x'));
    expectMended(riff("RMID", riffChunk("data", song)), song, "RIFF");
    expectMended(riff("RMID", info + riffChunk("data", song) + info), song, "RIFF");
    expectMended(riff("RMID", riffChunk("data", riff("RMID", riffChunk("data", song)))), song,
                 "RIFF");
    expectMended(riff("RMID", bytesOf({'d', 'a', 't', 'a', 0, 0, 0, 0}) + song), song, "RIFF");
    expectMended(Bytes(128, 0) + song + Bytes(77, 9), song, "128 bytes");
    expectMended(riff("RMID", bytesOf({'d', 'a', 't', 'a', 40, 0, 0, 0}) + song), song, "RIFF");
    const Bytes tracks(song.begin() + 14, song.end());
    const Bytes fields{0, 1, 0, 3, 1, 0xE0};
    expectMended(chunk("MThd", fields + Bytes(5, 7)) + tracks, song, "5 bytes longer");
    expectMended(chunk("MThd", fields, 0) + tracks, song, "wrong length");
    expectMended(chunk("MThd", fields, kEndless) + tracks, song, "wrong length");
}

TEST(Preparation, Finds_every_track_behind_a_wrong_length) {
    const std::vector<Bytes> tracks{melody(0, 40), melody(1, 50), melody(2, 60)};
    const std::size_t size = tracks[0].size();
    for (std::size_t broken = 0; broken < tracks.size(); ++broken) {
        for (const std::size_t length :
             {std::size_t{0}, std::size_t{1}, size - 1, size - 4, size - 30, size + 1, size + 9,
              size + 60, 2 * size + 8, 3 * size + 16, std::size_t{0x7FFFFFFF},
              std::size_t{kEndless}}) {
            SCOPED_TRACE(std::to_string(broken) + ": " + std::to_string(length));
            Bytes file = header(1, 3, 480);
            for (std::size_t i = 0; i < tracks.size(); ++i) {
                file = file + (i == broken
                                   ? chunk("MTrk", tracks[i], static_cast<std::uint32_t>(length))
                                   : chunk("MTrk", tracks[i]));
            }
            expectMended(file, threeTracks(), "wrong length");
        }
    }
}

TEST(Preparation, Counts_the_tracks_itself) {
    const Bytes song = threeTracks();
    const Bytes tracks(song.begin() + 14, song.end());
    for (const int count : {0, 1, 2, 4, 127, 128, 65535}) {
        expectMended(header(1, count, 480) + tracks, song, "the file has 3");
    }
    expectMended(header(1, 4, 480) + tracks + song, song, "the file has 3");
    const Bytes foreign = chunk("XFIH", Bytes(9, 1));
    expectMended(header(1, 3, 480) + foreign + chunk("MTrk", melody(0, 40)) + foreign +
                     chunk("MTrk", melody(1, 50)) + chunk("MTrk", melody(2, 60)),
                 song, "2 chunks of other kinds");
    expectMended(header(1, 3, 480) + chunk("MTrk", melody(0, 40)) + Bytes(3, 0xEE) +
                     chunk("MTrk", melody(1, 50)) + chunk("MTrk", melody(2, 60)),
                 song, "3 bytes between");
    expectMended(header(7, 3, 480) + tracks, song, "format");
}

TEST(Preparation, Merges_tracks_beyond_the_127th_in_their_order) {
    Bytes file = header(1, 129, 480);
    Bytes merged = header(1, 127, 480);
    for (int i = 0; i < 129; ++i) {
        const int key = i < 128 ? i : 1;
        const Bytes events = noteOn(key) + bytesOf({0x60, 0x80, key, 0});
        file = file + chunk("MTrk", events + kEnd);
        if (i < 125) {
            merged = merged + chunk("MTrk", events + kEnd);
        }
    }
    for (const int key : {125, 127}) {
        const int other = key == 127 ? 1 : 126;
        merged =
            merged +
            chunk("MTrk",
                  noteOn(key) + bytesOf({0, other, 0x64, 0x60, 0x80, key, 0, 0, other, 0}) + kEnd);
    }
    expectMended(file, merged, "merged into 127");
}

TEST(Preparation, Plays_sequences_one_after_the_other_each_at_its_own_tempo) {
    const Bytes fast{0x00, 0xFF, 0x51, 3, 3, 0, 0};
    const Bytes usual{0x00, 0xFF, 0x51, 3, 7, 0xA1, 0x20};
    const Bytes waltz{0x00, 0xFF, 0x58, 4, 3, 2, 24, 8};
    const Bytes common{0x00, 0xFF, 0x58, 4, 4, 2, 24, 8};
    const Bytes note = noteOn(60) + bytesOf({0x60, 0x80, 60, 0});
    const Bytes lateEnd{0x20, 0xFF, 0x2F, 0x00};
    const auto later = [](int delay, Bytes events) {
        events[0] = static_cast<std::uint8_t>(delay);
        return events;
    };
    const Bytes file = header(2, 4, 96) + chunk("MTrk", note + lateEnd) +
                       chunk("MTrk", fast + waltz + note + kEnd) + chunk("MTrk", note + lateEnd) +
                       chunk("MTrk", fast + note + kEnd);
    expectMended(file,
                 oneTrack(note + later(0x20, fast) + waltz + note + usual + common + note +
                          later(0x20, fast) + note + kEnd),
                 "4 separate sequences");
}

TEST(Preparation, Mends_system_exclusive_messages) {
    const Bytes whole = exclusive(0xF0, {0x43, 0x12, 0x13, 0xF7});
    const Bytes note = noteOn(60);
    const Bytes song = oneTrack(whole + note + kEnd);
    const Bytes without = oneTrack(note + kEnd);
    expectMended(oneTrack(exclusive(0xF0, {0x43}) + exclusive(0xF7, {0x12, 0x13}) +
                          exclusive(0xF7, {0xF7}) + note + kEnd),
                 song, "in parts; joined");
    expectMended(
        oneTrack(bytesOf({0x00, 0xF0, 0x80, 0x80, 4, 0x43, 0x12, 0x13, 0xF7}) + note + kEnd), song,
        "unusual");
    expectMended(oneTrack(exclusive(0xF0, {0x43, 0x12, 0x13}) + note + kEnd), song,
                 "no end; closed");
    expectMended(oneTrack(bytesOf({0x00, 0xF0, 3, 0x43, 0x12, 0x13, 0xF7}) + note + kEnd), song,
                 "");
    expectMended(oneTrack(exclusive(0xF0, {0x43}) + exclusive(0xF7, {0x12}) + note + kEnd), without,
                 "never ended");
    expectMended(oneTrack(exclusive(0xF0, {}) + note + kEnd), without, "never ended");
    expectMended(oneTrack(exclusive(0xF0, Bytes(16383, 1)) + note + kEnd), without, "never ended");
    expectMended(oneTrack(exclusive(0xF7, {0xF3, 0x01}) + note + kEnd), without, "escape");
    const Bytes longest = Bytes(16382, 1) + Bytes{0xF7};
    expectUntouched(oneTrack(exclusive(0xF0, longest) + kEnd));
    expectMended(oneTrack(exclusive(0xF0, Bytes{1} + longest) + note + kEnd), without, "too long");
    expectMended(oneTrack(exclusive(0xF0, {1}) + exclusive(0xF7, longest) + note + kEnd), without,
                 "too long");
}

TEST(Preparation, Steps_over_what_is_no_event) {
    std::vector<Bytes> events;
    for (int i = 0; i < 20; ++i) {
        events.push_back(bytesOf({0x10, i % 2 == 0 ? 0x90 : 0x80, 60 + i / 2, 0x40}));
    }
    const auto song = [&events](std::size_t at, const Bytes& between) {
        Bytes track;
        for (std::size_t i = 0; i < events.size(); ++i) {
            track = track + (i == at ? between + events[i] : events[i]);
        }
        return oneTrack(track + kEnd);
    };
    const Bytes intact = song(0, {});
    for (std::size_t at = 0; at < events.size(); ++at) {
        SCOPED_TRACE(at);
        for (const int status : {0xF4, 0xF5, 0xF9, 0xFD}) {
            expectMended(song(at, bytesOf({0x00, status})), intact);
        }
    }
    Bytes delayed = song(4, {0x10, 0xF4});
    delayed.at(kTrackAt + 4 * events[0].size() + 2) = 0;
    expectMended(delayed, intact);
    expectMended(song(0, {0x00, 0x33}), intact, "2 bytes were skipped");
    expectMended(song(8, {0x00, 0xF4, 0x01, 0xFF, 0xFF, 0xFF}), intact, "6 bytes were skipped");
}

TEST(Preparation, Goes_on_with_a_running_status_behind_real_time_messages) {
    expectMended(oneTrack(noteOn(60) + bytesOf({0x00, 0xF8, 0x10, 60, 0x00}) + kEnd),
                 oneTrack(noteOn(60) + bytesOf({0x00, 0xF8, 0x10, 0x90, 60, 0x00}) + kEnd),
                 "lacked status bytes");
}

TEST(Preparation, Ends_tracks_that_have_no_end) {
    const Bytes note = noteOn(60);
    const Bytes end{0x10, 0x80, 60, 0x40};
    expectMended(oneTrack(note), oneTrack(note + kEnd), "end-of-track");
    expectMended(oneTrack(note) + Bytes(3, 0xEE), oneTrack(note + kEnd), "end-of-track");
    expectMended(oneTrack(note + end + kEnd + Bytes(3, 0xFF)), oneTrack(note + end + kEnd),
                 "behind its end");
    // Cut off: what sounds is ended, the event that is not whole is dropped.
    const Bytes cut = header(0, 1, 96) +
                      chunk("MTrk", note + bytesOf({0x10, 0x90, 62, 0x64, 0x10, 0x80, 60}), 90);
    expectMended(
        cut,
        oneTrack(note + bytesOf({0x10, 62, 0x64, 0x00, 0x80, 60, 0x40, 0x00, 62, 0x40}) + kEnd));
    EXPECT_THAT(prepareSong(cut).notes,
                ElementsAre(HasSubstr("was cut off"), HasSubstr("2 notes")));
}

TEST(Preparation, Names_the_track_that_a_note_is_about) {
    const Bytes file =
        header(1, 2, 96) + chunk("MTrk", noteOn(60) + kEnd) + chunk("MTrk", noteOn(61));
    EXPECT_THAT(prepareSong(file).notes, ElementsAre(HasSubstr("the second track")));
}

TEST(Preparation, Says_why_a_file_is_beyond_repair) {
    const auto reason = [](const Bytes& file) {
        const PreparedSong song = prepareSong(file);
        EXPECT_TRUE(song.bytes.empty());
        EXPECT_FALSE(song.changed);
        return song.error;
    };
    EXPECT_THAT(reason({}), HasSubstr("empty"));
    EXPECT_THAT(reason(Bytes(5000, 'x')), HasSubstr("not a MIDI file"));
    EXPECT_THAT(reason(Bytes(70000, 0) + threeTracks()), HasSubstr("not a MIDI file"));
    EXPECT_THAT(reason({'M', 'T', 'h', 'd', 0, 0}), HasSubstr("inside its header"));
    EXPECT_THAT(reason(header(1, 3, 480)), HasSubstr("no track"));
    EXPECT_THAT(reason(header(1, 1, 480) + chunk("XFIH", Bytes(9, 1))), HasSubstr("no track"));
    EXPECT_THAT(reason(header(0, 1, 480) + chunk("MTrk", {})), HasSubstr("no event"));
    EXPECT_THAT(reason(header(0, 1, 480) + chunk("MTrk", {0x00, 0x90}, 4)), HasSubstr("no event"));
}
