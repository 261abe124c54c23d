// Makes songs event by event: a track is a list of timed messages, in order, then written as a chunk.
#include "bench/songs.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>

namespace bench {

namespace {

constexpr int kDivision = 480;
constexpr int kTicksPerEvent = 15; ///< at 120 quarter notes a minute: 64 events a second
constexpr int kGrid = 60;
constexpr int kHumanTicks = 8; ///< by how much players miss the grid
constexpr int kWallEvents = 64;
constexpr int kWallGap = 120;
constexpr int kHostileTicks = 16;
constexpr std::uint32_t kFarAway = 1000000; ///< the last event of a burst

struct Message {
    std::uint32_t time;
    std::uint8_t status; ///< 0xFF: a meta event of type data1
    std::uint8_t data1;
    std::uint8_t data2;
};

using Track = std::vector<Message>;

constexpr std::uint8_t kMeta = 0xFF;
constexpr std::uint8_t kLyric = 0x05;
constexpr std::uint8_t kTempo = 0x51;

std::uint8_t status(int kind, int channel) {
    return static_cast<std::uint8_t>(kind | channel);
}

/// One track of a realistic song: chords on a grid, each note with its end, and between them controllers,
/// bends, words and tempo changes.
class Player {
public:
    Player(int track, int tracks, int events)
        : m_random(static_cast<unsigned>(track + 1)), m_tracks(tracks), m_events(events),
          m_conducts(track == 0) {
        // One track alone is every channel's.
        m_channel = tracks == 1 ? -1 : track % 16;
    }

    Track play() {
        while (static_cast<int>(m_track.size()) < m_events) {
            const std::size_t before = m_track.size();
            phrase();
            const auto added = static_cast<int>(m_track.size() - before);
            m_time += static_cast<std::uint32_t>(
                std::max(added * kTicksPerEvent * m_tracks / kGrid * kGrid, kGrid));
        }
        std::stable_sort(m_track.begin(), m_track.end(),
                         [](const Message& a, const Message& b) { return a.time < b.time; });
        return std::move(m_track);
    }

private:
    int below(int limit) {
        return static_cast<int>(m_random() % static_cast<unsigned>(limit));
    }

    void add(std::uint32_t time, int kind, int data1, int data2) {
        const int channel = m_channel < 0 ? m_phraseChannel : m_channel;
        m_track.push_back({time, kind == kMeta ? kMeta : status(kind, channel),
                           static_cast<std::uint8_t>(data1), static_cast<std::uint8_t>(data2)});
    }

    void phrase() {
        m_phraseChannel = below(16);
        const int dice = below(1000);
        if (dice < 806) {
            chord(1 + below(4));
        } else if (dice < 858) {
            sweep(0xB0, 4 + below(8));
        } else if (dice < 903) {
            sweep(0xE0, 4 + below(8));
        } else if (!m_conducts) {
            // Words and tempo stand in the first track.
            chord(1);
        } else if (dice < 993) {
            add(m_time, kMeta, kLyric, below(26));
        } else {
            add(m_time, kMeta, kTempo, below(128));
        }
    }

    void chord(int notes) {
        const int length = kGrid * (1 + below(8));
        for (int i = 0; i < notes; ++i) {
            const int key = 36 + below(48);
            const std::uint32_t start = m_time + static_cast<std::uint32_t>(below(kHumanTicks));
            add(start, 0x90, key, 40 + below(80));
            add(start + static_cast<std::uint32_t>(length - below(kHumanTicks)), 0x80, key, 64);
        }
    }

    void sweep(int kind, int steps) {
        static constexpr int kControllers[] = {1, 7, 10, 11, 64, 91, 93, 74};
        const int controller = kControllers[below(8)];
        for (int i = 0; i < steps; ++i) {
            const std::uint32_t time = m_time + static_cast<std::uint32_t>(i * 10);
            add(time, kind, kind == 0xB0 ? controller : below(128), below(128));
        }
    }

    std::mt19937 m_random;
    int m_tracks;
    int m_events;
    bool m_conducts;
    int m_channel;
    int m_phraseChannel = 0;
    std::uint32_t m_time = 0;
    Track m_track;
};

std::uint32_t wallTime(const SongShape& shape, int index, int count) {
    switch (shape.kind) {
    case Kind::Walls:
        return static_cast<std::uint32_t>(index / kWallEvents * kWallGap);
    case Kind::Hostile:
        return static_cast<std::uint32_t>(std::int64_t{index} * kHostileTicks / count * kDivision);
    default:
        return index + 1 < count ? 1 : kFarAway;
    }
}

Track makeTrack(const SongShape& shape, int number) {
    const int count = shape.events / shape.tracks;
    if (shape.kind == Kind::Realistic) {
        return Player(number, shape.tracks, count).play();
    }
    Track track;
    for (int i = 0; i < count; ++i) {
        track.push_back({wallTime(shape, i, count), status(i % 2 == 0 ? 0x90 : 0x80, number % 16),
                         static_cast<std::uint8_t>(i / 2 % 128), 100});
    }
    return track;
}

class ChunkWriter {
public:
    explicit ChunkWriter(std::vector<std::uint8_t>& file) : m_file(file) {}

    void number(std::uint32_t value, int bytes) {
        for (int shift = 8 * (bytes - 1); shift >= 0; shift -= 8) {
            m_file.push_back(static_cast<std::uint8_t>(value >> shift));
        }
    }

    void text(const char* characters) {
        m_file.insert(m_file.end(), characters,
                      characters + std::char_traits<char>::length(characters));
    }

    void track(const Track& track) {
        text("MTrk");
        const std::size_t lengthAt = m_file.size();
        number(0, 4);
        std::uint32_t time = 0;
        int running = -1;
        for (const Message& message : track) {
            delta(message.time - time);
            time = message.time;
            write(message, running);
        }
        m_file.insert(m_file.end(), {0, kMeta, 0x2F, 0});
        const auto length = static_cast<std::uint32_t>(m_file.size() - lengthAt - 4);
        for (int i = 0; i < 4; ++i) {
            m_file[lengthAt + static_cast<std::size_t>(i)] =
                static_cast<std::uint8_t>(length >> (24 - 8 * i));
        }
    }

private:
    void delta(std::uint32_t value) {
        for (int shift = 28; shift > 0; shift -= 7) {
            if (value >> shift != 0) {
                m_file.push_back(static_cast<std::uint8_t>(0x80 | (value >> shift & 0x7F)));
            }
        }
        m_file.push_back(static_cast<std::uint8_t>(value & 0x7F));
    }

    void write(const Message& message, int& running) {
        if (message.status == kMeta) {
            running = -1;
            m_file.insert(m_file.end(), {kMeta, message.data1});
            if (message.data1 == kTempo) {
                m_file.insert(m_file.end(), {3, 0x07, message.data2, 0});
            } else {
                m_file.insert(m_file.end(),
                              {3, 'l', static_cast<std::uint8_t>('a' + message.data2), ' '});
            }
            return;
        }
        if (message.status != running) {
            m_file.push_back(message.status);
            running = message.status;
        }
        m_file.insert(m_file.end(), {message.data1, message.data2});
    }

    std::vector<std::uint8_t>& m_file;
};

/// Where the files lie: a folder that is kept, or one of this process alone.
class Folder {
public:
    Folder() {
        const char* const kept = std::getenv("CORVMO_BENCH_SONGS");
        m_ours = kept == nullptr;
        m_path = m_ours ? std::filesystem::temp_directory_path() /
                              ("corvmo-bench-" + std::to_string(std::random_device()()))
                        : std::filesystem::path(kept);
        std::filesystem::create_directories(m_path);
    }
    ~Folder() {
        if (m_ours) {
            std::error_code ignored;
            std::filesystem::remove_all(m_path, ignored);
        }
    }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;

    const std::filesystem::path& path() const {
        return m_path;
    }

private:
    std::filesystem::path m_path;
    bool m_ours = false;
};

const std::filesystem::path& folder() {
    static const Folder instance;
    return instance.path();
}

} // namespace

std::string nameOf(const SongShape& shape) {
    static constexpr const char* kNames[] = {"realistic", "walls", "hostile", "burst"};
    return std::string(kNames[static_cast<int>(shape.kind)]) + '-' + std::to_string(shape.tracks) +
           '-' + std::to_string(shape.events);
}

std::vector<std::uint8_t> makeSong(const SongShape& shape) {
    std::vector<std::uint8_t> file;
    ChunkWriter writer(file);
    writer.text("MThd");
    writer.number(6, 4);
    writer.number(shape.tracks == 1 ? 0 : 1, 2);
    writer.number(static_cast<std::uint32_t>(shape.tracks), 2);
    writer.number(kDivision, 2);
    for (int i = 0; i < shape.tracks; ++i) {
        writer.track(makeTrack(shape, i));
    }
    return file;
}

std::vector<MMEVENT> makeList(const SongShape& shape) {
    std::vector<MMEVENT> list;
    for (int i = 0; i < shape.tracks; ++i) {
        for (const Message& message : makeTrack(shape, i)) {
            if (message.status != kMeta || message.data1 == kTempo) {
                list.push_back({message.status, message.data1, message.data2, 0, message.time});
            }
        }
    }
    return list;
}

std::string songFile(const SongShape& shape) {
    const std::filesystem::path path = folder() / (nameOf(shape) + ".mid");
    if (!std::filesystem::exists(path)) {
        const std::vector<std::uint8_t> bytes = makeSong(shape);
        std::ofstream(path, std::ios::binary)
            .write(reinterpret_cast<const char*>(bytes.data()),
                   static_cast<std::streamsize>(bytes.size()));
    }
    return path.string();
}

std::uintmax_t fileSize(const SongShape& shape) {
    return std::filesystem::file_size(songFile(shape));
}

} // namespace bench
