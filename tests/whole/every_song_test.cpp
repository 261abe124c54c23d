// Every song at hand loads, plays to its end and leaves nothing sounding.
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <set>

#include "corvmo32_errors.h"
#include "tests/support/engine_test.h"

using ::testing::IsEmpty;

namespace {

namespace fs = std::filesystem;

constexpr int kMaxDivision = 960;

/// The songs below the project's folder and below the one that the environment names.
std::set<fs::path> songs() {
    std::set<fs::path> found;
    const char* const more = std::getenv("CORVMO_SONG_DIR");
    for (const fs::path& folder :
         {fs::path(CORVMO_SOURCE_DIR) / "songs", fs::path(more == nullptr ? "" : more)}) {
        if (!fs::is_directory(folder)) {
            continue;
        }
        for (const auto& entry : fs::recursive_directory_iterator(folder)) {
            if (entry.path().extension() == ".mid" || entry.path().extension() == ".kar") {
                found.insert(entry.path());
            }
        }
    }
    return found;
}

int divisionOf(const fs::path& song) {
    std::ifstream file(song, std::ios::binary);
    char header[14] = {};
    file.read(header, sizeof header);
    return static_cast<unsigned char>(header[12]) << 8 | static_cast<unsigned char>(header[13]);
}

} // namespace

class EverySong : public EngineTest {};

TEST_F(EverySong, Loads_plays_to_its_end_and_leaves_nothing_sounding) {
    start();
    const std::set<fs::path> files = songs();
    ASSERT_FALSE(files.empty());
    for (const fs::path& file : files) {
        SCOPED_TRACE(file.filename().string());
        const bool opened = mm_Open(mm1, file.string().c_str(), kAllOptions, 0, 0, nullptr) == 1;
        if (divisionOf(file) > kMaxDivision) {
            EXPECT_FALSE(opened);
            EXPECT_EQ(mm_GetLastError(), ENGINE_ERR_FILE);
            continue;
        }
        ASSERT_TRUE(opened) << "error " << mm_GetLastError();
        mm_SetLoop(mm1, nullptr);
        EXPECT_EQ(mm_PlayFirstNote(mm1), 1);
        const std::uint32_t end = MM1.events[MM1.eventCount - 1].time;
        mm_StartSync(mm1);
        std::size_t ends = posted(MMN_END).size();
        while (MM1.playing != 0) {
            ticks(100); // the window must not fill up
            ends += posted(MMN_END).size();
        }
        EXPECT_EQ(ends, 1U);
        EXPECT_GE(+MM1.ticks, end);
        mm_Close(mm1);
        EXPECT_THAT(stillSounding(machine::takeSent()), IsEmpty());
    }
}
