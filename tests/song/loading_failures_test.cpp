// Files and machines that cannot give a song: every cause has its code, or leaves the last one.
#include "tests/song/song_test.h"
#include "tests/support/ordinary_heap.h"

using ::testing::ElementsAre;

namespace {

constexpr int kSongBlocks = 7; ///< file, lyrics, chords, markers, store, events, tracks
constexpr int kEventBlock = 6;
constexpr std::size_t kFirstChunk = 14;
constexpr std::size_t kLengthOffset = 18;
constexpr std::size_t kDataOffset = 22;
constexpr int kFirstCapacity = 32768;

SongBuilder smallSong() {
    SongBuilder song;
    song.track().note(0, 60, 96);
    return song;
}

Bytes changed(Bytes file, std::size_t offset, const Bytes& with) {
    std::copy(with.begin(), with.end(), file.begin() + static_cast<std::ptrdiff_t>(offset));
    return file;
}

} // namespace

class LoadingFailures : public SongTest {};

TEST_F(LoadingFailures, The_header_is_refused_field_by_field) {
    using Fault = std::pair<std::size_t, Bytes>;
    for (const auto& [offset, bytes] :
         {Fault{0, {'m'}}, Fault{3, {'x'}}, Fault{4, {0, 0, 0, 7}}, Fault{4, {1, 0, 0, 6}},
          Fault{8, {0, 2}}, Fault{8, {0xFF, 0xFF}}, Fault{10, {0, 0}}, Fault{10, {0, 128}},
          Fault{10, {0x80, 1}}, Fault{12, {0, 0}}, Fault{12, {3, 0xC1}}, Fault{12, {0xE7, 40}}}) {
        expectRefused(changed(smallSong().bytes(), offset, bytes), ENGINE_ERR_FILE,
                      "offset " + std::to_string(offset));
    }
    for (const Bytes& division : {Bytes{0x03, 0xC0}, Bytes{0x00, 0x01}}) {
        EXPECT_EQ(openBytes(changed(smallSong().bytes(), 12, division)), 1);
    }
    SongBuilder crowd;
    for (int i = 0; i < 127; ++i) {
        crowd.track();
    }
    EXPECT_EQ(open(crowd), 1);
    EXPECT_EQ(+MM1.tracks[126].number, 127);
    crowd.track();
    expectRefused(crowd.bytes(), ENGINE_ERR_FILE, "128 tracks");
}

TEST_F(LoadingFailures, A_file_that_cannot_be_read_has_its_code) {
    const std::string missing = writeFile({}) + ".missing";
    for (const char* const name : {static_cast<const char*>(nullptr), missing.c_str()}) {
        g_lastError.store(kEarlierError);
        EXPECT_EQ(mm_Scan(mm1, name), 0);
        EXPECT_EQ(mm_GetLastError(), ENGINE_ERR_FILE);
    }
    expectRefused({}, ENGINE_ERR_FILE, "empty");
    for (const char* const function : {"CreateFileA", "GetFileSize", "ReadFile"}) {
        machine::failCall("CloseHandle", 0);
        machine::failCall(function, 1);
        const bool reading = std::string(function) == "ReadFile";
        expectRefused(smallSong().bytes(), reading ? ENGINE_ERR_READ : ENGINE_ERR_FILE, function);
        EXPECT_EQ(machine::callCount("CloseHandle"),
                  std::string(function) == "CreateFileA" ? 0 : 1);
    }
    EXPECT_EQ(open(smallSong()), 1);
}

TEST_F(LoadingFailures, Every_truncation_of_a_song_has_its_code) {
    const Bytes whole = smallSong().bytes();
    for (std::size_t size = 1; size < whole.size(); ++size) {
        std::uint32_t code = kEarlierError;
        if (size < kFirstChunk + 4) {
            code = size < 13 ? ENGINE_ERR_FILE : ENGINE_ERR_CHUNK;
        }
        expectRefused(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)), code,
                      std::to_string(size) + " bytes");
    }
}

TEST_F(LoadingFailures, Track_chunks_follow_each_other_and_lie_within_the_file) {
    SongBuilder song = smallSong();
    song.track().note(1, 62, 96);
    const std::size_t second = smallSong().bytes().size();
    expectRefused(changed(song.bytes(), 14, {'X'}), ENGINE_ERR_CHUNK, "first chunk");
    expectRefused(changed(song.bytes(), second + 3, {'K'}), ENGINE_ERR_CHUNK, "second chunk");
    expectRefused(changed(smallSong().bytes(), 11, {2}), ENGINE_ERR_CHUNK, "one of two tracks");

    Bytes tail = smallSong().bytes();
    tail.insert(tail.end(), {'M', 'T', 'r', 'k', 0xFF, 0xFF, 0xFF, 0xFF});
    EXPECT_EQ(openBytes(tail), 1) << "what follows the declared tracks is not read";

    const std::size_t length = second - kDataOffset;
    const auto tooLong = static_cast<std::uint8_t>(length + 1);
    for (const Bytes& bad : {Bytes{0, 0, 0, tooLong}, Bytes{0x80, 0, 0, 0}, Bytes(4, 0xFF)}) {
        expectRefused(changed(smallSong().bytes(), kLengthOffset, bad), kEarlierError, "length");
    }
}

TEST_F(LoadingFailures, Each_block_that_cannot_be_had_has_its_code_and_nothing_is_lost) {
    for (const char* const function : {"GlobalAlloc", "GlobalLock"}) {
        for (int block = 1; block <= kSongBlocks; ++block) {
            const bool allocating = std::string(function) == "GlobalAlloc";
            machine::failCall("GlobalAlloc", 0);
            machine::failCall("GlobalFree", 0);
            machine::failCall(function, block);
            expectRefused(smallSong().bytes(),
                          block == kEventBlock ? ENGINE_ERR_LOCK : ENGINE_ERR_ALLOC,
                          function + std::to_string(block));
            EXPECT_EQ(mm_GetPointerEvents(mm1, 0) != nullptr, block > kEventBlock);
            mm_StartSync(mm1);
            EXPECT_EQ(+MM1.playing, 0);
            mm_Close(mm1);
            EXPECT_EQ(machine::callCount("GlobalFree"),
                      machine::callCount("GlobalAlloc") - (allocating ? 1 : 0));
        }
    }
    EXPECT_EQ(open(smallSong()), 1);
}

TEST_F(LoadingFailures, Text_lines_that_cannot_be_had_fail_the_opening_and_are_given_back) {
    for (int line = 1; line <= 4; ++line) {
        const std::string file = smallSong().write();
        mm_Close(mm1);
        failOrdinaryHeap(line);
        EXPECT_EQ(mm_Open(mm1, file.c_str(), 0, 0, 0, nullptr), 0);
        EXPECT_EQ(mm_GetLastError(), ENGINE_ERR_ALLOC);
    }
    EXPECT_EQ(open(smallSong()), 1);
}

TEST_F(LoadingFailures, An_event_list_that_cannot_grow_fails_the_opening_whatever_the_event) {
    using Writer = void (*)(TrackBuilder&);
    const Writer writers[] = {
        [](TrackBuilder& track) { track.noteOn(0, 60); },
        [](TrackBuilder& track) { track.tempo(400000); },
        [](TrackBuilder& track) { track.timeSignature(6, 3); },
        [](TrackBuilder& track) {
            track.systemExclusive({0x7D, 1});
        },
        [](TrackBuilder& track) { track.at(1); }, // the end note alone
    };
    for (const Writer& writer : writers) {
        SongBuilder song;
        TrackBuilder& track = song.track().at(1);
        for (int i = 0; i < kFirstCapacity; ++i) {
            track.noteOn(0, i % 128);
        }
        writer(track);
        for (const char* const function : {"GlobalReAlloc", "GlobalLock"}) {
            const bool locking = std::string(function) == "GlobalLock";
            g_lastError.store(kEarlierError);
            machine::failCall("GlobalAlloc", 0);
            machine::failCall("GlobalFree", 0);
            machine::failCall(function, locking ? kSongBlocks + 1 : 1);
            EXPECT_EQ(open(song, 0, 1), 0) << &writer - writers << function;
            EXPECT_EQ(mm_GetLastError(), ENGINE_ERR_LOCK);
            EXPECT_EQ(mm_GetNumEvents(mm1), locking ? 0 : kFirstCapacity);
            EXPECT_EQ(g_busy.load(), 0u);
            mm_Close(mm1);
            EXPECT_EQ(machine::callCount("GlobalFree"), machine::callCount("GlobalAlloc"));
        }
        EXPECT_EQ(open(song, 0, 1), 1);
        EXPECT_GT(mm_GetNumEvents(mm1), kFirstCapacity);
        mm_Close(mm1);
    }
}

TEST_F(LoadingFailures, A_list_that_cannot_grow_far_at_once_grows_by_what_it_needs) {
    SongBuilder song;
    TrackBuilder& track = song.track();
    for (int i = 0; i < 3 * kFirstCapacity; ++i) {
        track.noteOn(0, i % 128);
    }
    machine::failCall("GlobalReAlloc", 1);
    EXPECT_EQ(open(song), 1);
    EXPECT_EQ(mm_GetNumEvents(mm1), 3 * kFirstCapacity);
    EXPECT_EQ(+MM1.eventCapacity, 3 * kFirstCapacity);
    EXPECT_EQ(machine::callCount("GlobalReAlloc"), 3) << "refused, by one step, and for the rest";
    EXPECT_EQ(eventLines(MM1).back(), "0 90 7F 64 00");
}
