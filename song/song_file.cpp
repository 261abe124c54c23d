// Opening a song: reads the file, checks its header, lists and parses its tracks, and gives every per-song
// field its starting value.
#include <atomic>
#include <cstdlib>
#include <cstring>
#include <iterator>

#include "corvmo32.h"
#include "engine/global_block.h"
#include "engine/globals.h"
#include "engine/guards.h"
#include "engine/midi.h"
#include "engine/output.h"
#include "engine/players.h"
#include "engine/shared_field.h"
#include "song/song.h"

namespace {

constexpr char kHeaderTag[] = "MThd";
constexpr char kTrackTag[] = "MTrk";
constexpr std::size_t kTagSize = 4;
constexpr std::uint32_t kChunkHeadSize = 8; ///< tag and length
constexpr std::uint32_t kHeaderLength = 6;
constexpr std::int16_t kMaxFormat = 1;
constexpr std::int16_t kMaxTracks = 127;
constexpr std::int16_t kMaxDivision = 960;

constexpr std::int32_t kFirstCapacity = 32768;
constexpr std::uint32_t kDefaultTempo = 500000; ///< microseconds per quarter note
constexpr std::int32_t kNoKeySignature = -1;
constexpr std::int16_t kDefaultBeat = 4;
constexpr std::int16_t kLastTextLine = 3;

constexpr DWORD kOpeningPause = 1; ///< milliseconds

std::atomic<bool> openingUnderWay;

/// Openings wait for each other: the globals in which a song's words are gathered serve one at a time.
class OpeningGuard {
public:
    OpeningGuard() noexcept {
        while (openingUnderWay.exchange(true, std::memory_order_acquire)) {
            Sleep(kOpeningPause);
        }
    }
    ~OpeningGuard() {
        openingUnderWay.store(false, std::memory_order_release);
    }
    OpeningGuard(const OpeningGuard&) = delete;
    OpeningGuard& operator=(const OpeningGuard&) = delete;
};

/// What mm_Open was asked for.
struct Request {
    HMIDIOUT handle;
    const char* fileName;
    std::uint16_t options;
    std::int16_t noReset;
    std::int16_t endOnBeat;
    const MMCLICK* click;

    bool scanOnly() const noexcept {
        return (options & MMOPT_SCAN) != 0;
    }
};

bool fail(std::uint32_t error) noexcept {
    g_lastError.store(error);
    return false;
}

bool obtainTextLines(MIDIOUT& player) noexcept {
    for (char*& line : player.textLine) {
        line = static_cast<char*>(std::calloc(MM_TEXTLINE_SIZE, 1));
        if (line == nullptr) {
            return fail(ENGINE_ERR_ALLOC);
        }
    }
    return true;
}

void resetDevice(MIDIOUT& player, const Request& request) noexcept {
    if (request.scanOnly()) {
        return;
    }
    const bool suppressed = g_noResetFlag != 0 && request.noReset != 0;
    if (g_resetOnOpen == 0 || suppressed) {
        storeShared<std::uint32_t>(&g_resetTime, 0);
        return;
    }
    const ResetMessage reset = resetMessageOf(player.mode);
    sendLongMessage(player, reset.bytes, reset.length);
    storeShared<std::uint32_t>(&g_resetTime, timeGetTime());
}

/// Closes the file on every way out.
class OpenFile {
public:
    explicit OpenFile(const char* name) noexcept
        : m_handle(name == nullptr ? INVALID_HANDLE_VALUE
                                   : CreateFileA(name, GENERIC_READ, FILE_SHARE_READ, nullptr,
                                                 OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr)) {}
    ~OpenFile() {
        if (*this) {
            CloseHandle(m_handle);
        }
    }
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;
    explicit operator bool() const noexcept {
        return m_handle != INVALID_HANDLE_VALUE;
    }
    HANDLE handle() const noexcept {
        return m_handle;
    }

private:
    HANDLE m_handle;
};

/// Releases the file copy on every way out of an opening.
class FileCopy {
public:
    explicit FileCopy(MIDIOUT& player) noexcept : m_player(player) {}
    ~FileCopy() {
        releaseBlock(m_player.fileMem, m_player.fileData);
        m_player.fileMem = nullptr;
        m_player.fileData = nullptr;
    }
    FileCopy(const FileCopy&) = delete;
    FileCopy& operator=(const FileCopy&) = delete;

    bool read(const char* fileName) noexcept;

private:
    MIDIOUT& m_player;
};

bool FileCopy::read(const char* fileName) noexcept {
    const OpenFile file(fileName);
    if (!file) {
        return fail(ENGINE_ERR_FILE);
    }
    m_player.fileSize = GetFileSize(file.handle(), nullptr);
    if (m_player.fileSize == INVALID_FILE_SIZE || m_player.fileSize == 0) {
        return fail(ENGINE_ERR_FILE);
    }
    const GlobalBlock copy = obtainBlock(GMEM_FIXED | GMEM_ZEROINIT, m_player.fileSize);
    m_player.fileMem = copy.mem;
    m_player.fileData = static_cast<std::uint8_t*>(copy.address);
    if (!copy) {
        return fail(ENGINE_ERR_ALLOC);
    }
    DWORD bytesRead = 0;
    ReadFile(file.handle(), m_player.fileData, m_player.fileSize, &bytesRead, nullptr);
    if (bytesRead == 0) {
        return fail(ENGINE_ERR_READ);
    }
    return true;
}

/// Obtains a zero-filled table of a song; `store` takes its handle and its address, both null when it
/// cannot be had. (A pointer to a member would lose the record's packing.)
template <typename Record, typename Store>
bool obtainTable(std::size_t records, Store store) noexcept {
    const GlobalBlock block = obtainBlock(GMEM_FIXED | GMEM_ZEROINIT, records * sizeof(Record));
    store(block.mem, static_cast<Record*>(block.address));
    if (!block) {
        return fail(ENGINE_ERR_ALLOC);
    }
    return true;
}

bool obtainEventBuffer(MIDIOUT& player) noexcept {
    player.eventCapacity = kFirstCapacity;
    const GlobalBlock block =
        obtainBlock(GMEM_MOVEABLE | GMEM_ZEROINIT, kFirstCapacity * sizeof(MMEVENT));
    player.eventMem = block.mem;
    storeShared(&player.events, static_cast<MMEVENT*>(block.address));
    player.eventEnd = player.events;
    if (!block) {
        return fail(ENGINE_ERR_LOCK);
    }
    return true;
}

bool obtainTextTables(MIDIOUT& player) noexcept {
    return obtainTable<MMLYRIC>(MM_MAX_LYRICS,
                                [&player](HGLOBAL mem, MMLYRIC* table) {
                                    player.lyricMem = mem;
                                    storeShared(&player.lyrics, table);
                                }) &&
           obtainTable<MMCHORD>(MM_MAX_CHORDS,
                                [&player](HGLOBAL mem, MMCHORD* table) {
                                    player.chordMem = mem;
                                    storeShared(&player.chords, table);
                                }) &&
           obtainTable<MMMARKER>(MM_MAX_MARKERS, [&player](HGLOBAL mem, MMMARKER* table) {
               player.markerMem = mem;
               storeShared(&player.markers, table);
           });
}

bool obtainStore(MIDIOUT& player) noexcept {
    return g_sysexStore == 0 ||
           obtainTable<MMSYSEX>(MM_MAX_SYSEX, [&player](HGLOBAL mem, MMSYSEX* table) {
               player.sysexMem = mem;
               storeShared(&player.sysex, table);
           });
}

bool obtainTrackTable(MIDIOUT& player) noexcept {
    const auto tracks = static_cast<std::size_t>(player.trackCount);
    return obtainTable<MMTRACK>(tracks, [&player](HGLOBAL mem, MMTRACK* table) {
        player.trackMem = mem;
        storeShared(&player.tracks, table);
    });
}

void resetLoadingState() noexcept {
    g_ccLyrics = 0;
    g_karaokeSysEx = 0;
    g_atHeader = 0;
    g_lyricsRestarted = 0;
    resetSyllables();
}

void setMetronome(MIDIOUT& player, const MMCLICK* click) noexcept {
    player.click = click != nullptr ? *click : MMCLICK{};
    player.click.timeSigTick = 0;
    player.click.nextClick = 0;
}

void clearPatches(MIDIOUT& player) noexcept {
    for (int channel = 0; channel < midi::kChannels; ++channel) {
        storeShared<std::int16_t>(&player.patch[channel].program, MMPATCH_NO_OVERRIDE);
        player.songPatch[channel].program = MMPATCH_NO_OVERRIDE;
    }
}

void setStartValues(MIDIOUT& player, const Request& request) noexcept {
    restartTextTables(player);
    resetLoadingState();
    storeShared<std::int16_t>(&player.markerCount, 0);
    player.resetCount = 0;
    player.textLineIndex = kLastTextLine;
    player.beatsPerBar = kDefaultBeat;
    player.beatUnit = kDefaultBeat;
    storeShared<std::uint32_t>(&player.tempo, kDefaultTempo << 8);
    player.eventPlay = player.events;
    player.lyricPlay = player.lyrics;
    player.chordPlay = player.chords;
    player.info.keySignature = kNoKeySignature;
    fillShared(player.replaceNotes, 0xFF, sizeof player.replaceNotes);
    if (!request.scanOnly()) {
        setMetronome(player, request.click);
        clearPatches(player);
        setDefaultRoutes(player, request.handle);
    }
}

std::uint8_t byteAt(const MIDIOUT& player, std::uint64_t position) noexcept {
    return position < player.fileSize ? player.fileData[position] : std::uint8_t{0};
}

std::uint32_t numberAt(const MIDIOUT& player, std::uint64_t position, int bytes) noexcept {
    std::uint32_t number = 0;
    for (int i = 0; i < bytes; ++i) {
        number = number << 8 | byteAt(player, position + static_cast<std::uint64_t>(i));
    }
    return number;
}

bool hasTag(const MIDIOUT& player, std::uint64_t position, const char* tag) noexcept {
    for (std::size_t i = 0; i < kTagSize; ++i) {
        if (byteAt(player, position + i) != static_cast<std::uint8_t>(tag[i])) {
            return false;
        }
    }
    return true;
}

bool readHeader(MIDIOUT& player) noexcept {
    const auto wordAt = [&player](std::uint32_t position) {
        return static_cast<std::int16_t>(numberAt(player, position, 2));
    };
    if (!hasTag(player, 0, kHeaderTag) || numberAt(player, kTagSize, 4) != kHeaderLength) {
        return fail(ENGINE_ERR_FILE);
    }
    player.format = wordAt(kChunkHeadSize);
    if (player.format < 0 || player.format > kMaxFormat) {
        return fail(ENGINE_ERR_FILE);
    }
    player.trackCount = wordAt(kChunkHeadSize + 2);
    if (player.trackCount < 1 || player.trackCount > kMaxTracks) {
        return fail(ENGINE_ERR_FILE);
    }
    storeShared<std::int16_t>(&player.division, wordAt(kChunkHeadSize + 4));
    if (player.division < 1 || player.division > kMaxDivision) {
        return fail(ENGINE_ERR_FILE);
    }
    player.readPos = kChunkHeadSize + kHeaderLength;
    return true;
}

/// Fills the track table; the chunks follow each other without gaps.
bool listTracks(MIDIOUT& player) noexcept {
    std::uint64_t position = player.readPos;
    for (std::int16_t i = 0; i < player.trackCount; ++i) {
        if (!hasTag(player, position, kTrackTag)) {
            return fail(ENGINE_ERR_CHUNK);
        }
        MMTRACK& track = player.tracks[i];
        track = {};
        track.number = static_cast<std::uint16_t>(i + 1);
        track.length = numberAt(player, position + kTagSize, 4);
        track.dataStart = static_cast<std::uint32_t>(position + kChunkHeadSize);
        track.readPos = track.dataStart;
        track.runningStatus = -1;
        position += std::uint64_t{kChunkHeadSize} + track.length;
        if (position > player.fileSize) {
            return false;
        }
    }
    return true;
}

bool parseTracks(MIDIOUT& player) noexcept {
    for (std::int16_t i = 0; i < player.trackCount; ++i) {
        if (!parseTrack(player, player.tracks[i])) {
            return false;
        }
    }
    return true;
}

bool loadFile(MIDIOUT& player, const Request& request) noexcept {
    FileCopy copy(player);
    if (!copy.read(request.fileName) || !obtainTextTables(player) || !obtainStore(player) ||
        !obtainEventBuffer(player)) {
        return false;
    }
    setStartValues(player, request);
    if (!readHeader(player) || !obtainTrackTable(player) || !listTracks(player) ||
        !parseTracks(player)) {
        return false;
    }
    // One track is in time order already.
    if (player.trackCount > 1 && player.eventCount >= 2) {
        sortEvents(player.events, player.eventCount);
    }
    return settleEnd(player);
}

bool openSong(MIDIOUT& player, const Request& request) noexcept {
    setPlaying(player, false);
    storeShared<std::uint32_t>(&player.options, request.options);
    player.endOnBeat = request.endOnBeat;
    g_noResetArg.store(request.noReset);
    if (!obtainTextLines(player)) {
        return false;
    }
    resetDevice(player, request);
    if (!loadFile(player, request)) {
        // Half a song must not be played: without a cursor the player holds none.
        player.eventPlay = nullptr;
        return false;
    }
    // The buffer may have moved while it grew.
    player.eventPlay = player.events;
    return true;
}

/// Anything that an opening, successful or not, has left to free.
bool holdsSongMemory(const MIDIOUT& player) noexcept {
    return player.textLine[0] != nullptr;
}

} // namespace

std::int16_t CORVMO_CALL mm_Open(HMIDIOUT handle, const char* fileName, std::uint16_t options,
                                 std::int16_t noReset, std::int16_t endOnBeat,
                                 const MMCLICK* click) {
    if (!engineRunning()) {
        return 0;
    }
    const OpeningGuard opening;
    MIDIOUT& player = selectPlayer(handle);
    if (holdsSongMemory(player)) {
        unloadSong(player);
    }
    return openSong(player, {handle, fileName, options, noReset, endOnBeat, click}) ? 1 : 0;
}

std::int16_t CORVMO_CALL mm_Scan(HMIDIOUT handle, const char* fileName) {
    if (mm_Open(handle, fileName, MMOPT_SCAN, 0, 0, nullptr) == 0) {
        return 0;
    }
    MMINFO& info = selectPlayer(handle).info;
    if (info.firstTempo == 0) {
        info.firstTempo = kDefaultTempo;
    }
    if (info.keySignature == kNoKeySignature) {
        info.keySignature = 0;
    }
    return 1;
}
