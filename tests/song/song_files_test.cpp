// Real songs: those of the project and those in the folder that CORVMO_SONG_DIR names. Each must load with
// the events that an independent reader finds in it.
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "tests/song/song_test.h"

namespace fs = std::filesystem;

namespace {

constexpr int kMaxDivision = 960;

/// Counts what belongs into the event list. Throws std::out_of_range on a file that is cut off.
class Reader {
public:
    explicit Reader(const fs::path& path) {
        std::ifstream file(path, std::ios::binary);
        file_.assign(std::istreambuf_iterator<char>(file), {});
    }

    void readSong() {
        at_ = 10;
        unsigned tracks = number(2);
        for (division = number(2); tracks > 0; --tracks) {
            at_ += 4;
            const std::size_t length = number(4);
            readTrack(at_ + length);
        }
    }

    unsigned division = 0;
    int events = 0;
    unsigned lastTime = 0;

private:
    unsigned number(int bytes) {
        unsigned value = 0;
        while (bytes-- > 0) {
            value = value * 256 + file_.at(at_++);
        }
        return value;
    }

    unsigned variable() {
        unsigned value = 0;
        for (;;) {
            const unsigned byte = number(1);
            value = value * 128 + byte % 128;
            if (byte < 128) {
                return value;
            }
        }
    }

    /// True when the event belongs into the list.
    bool readEvent() {
        if (file_.at(at_) > 127) {
            status_ = number(1);
        }
        if (status_ == 0xFF) {
            const unsigned type = number(1);
            const unsigned length = variable();
            at_ += length;
            return (type == 0x51 && length >= 3) ||
                   (type == 0x58 && length >= 2 && file_.at(at_ - length + 1) < 8);
        }
        at_ += status_ == 0xF0 || status_ == 0xF7 ? variable() : status_ / 32 == 6 ? 1 : 2;
        return true;
    }

    void readTrack(std::size_t end) {
        for (unsigned time = 0; at_ < end;) {
            time += variable();
            const unsigned running = status_;
            if (readEvent()) {
                ++events;
                lastTime = std::max(lastTime, time);
            }
            status_ = status_ < 0xF0 ? status_ : running;
        }
        at_ = end;
    }

    Bytes file_;
    std::size_t at_ = 0;
    unsigned status_ = 0;
};

std::vector<fs::path> songsBelow(const fs::path& folder) {
    std::vector<fs::path> songs;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        const fs::path extension = entry.path().extension();
        if (extension == ".mid" || extension == ".kar") {
            songs.push_back(entry.path());
        }
    }
    std::sort(songs.begin(), songs.end());
    return songs;
}

} // namespace

class SongFiles : public SongTest {
protected:
    void expectLoads(const fs::path& path) {
        SCOPED_TRACE(path.string());
        Reader reader(path);
        ASSERT_NO_THROW(reader.readSong());
        g_lastError.store(0);
        const std::int16_t opened = mm_Open(mm1, path.string().c_str(), 0, 0, 1, nullptr);
        if (reader.division > kMaxDivision) {
            EXPECT_EQ(opened, 0);
            EXPECT_EQ(mm_GetLastError(), ENGINE_ERR_FILE);
            return;
        }
        ASSERT_EQ(opened, 1) << "error " << mm_GetLastError();
        const int endNote = reader.lastTime % reader.division == 0 ? 0 : 1;
        EXPECT_EQ(mm_GetNumEvents(mm1), reader.events + endNote);
        for (std::int32_t i = 1; i < MM1.eventCount; ++i) {
            ASSERT_LE(+MM1.events[i - 1].time, +MM1.events[i].time) << "event " << i;
        }
    }
};

TEST_F(SongFiles, Every_song_loads_with_all_its_events_in_time_order) {
    std::vector<fs::path> songs = songsBelow(fs::path(CORVMO_SOURCE_DIR) / "songs");
    EXPECT_FALSE(songs.empty());
    const char* const folder = std::getenv("CORVMO_SONG_DIR");
    if (folder != nullptr && *folder != '\0') {
        const std::vector<fs::path> more = songsBelow(folder);
        EXPECT_FALSE(more.empty()) << folder;
        songs.insert(songs.end(), more.begin(), more.end());
    }
    for (const fs::path& song : songs) {
        expectLoads(song);
    }
}
