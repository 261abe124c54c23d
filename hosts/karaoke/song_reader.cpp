// Reads songs without opening any output.
#include "karaoke/song_reader.h"

#include "corvmo32_linux.h"
#include "shared/song_loader.h"

namespace karaoke {

namespace {

host::EngineSettings silentSettings() {
    static const corvmo_output kNone{};
    corvmo_SetOutputs(&kNone, 0);
    corvmo_UseManualClock(0);
    return {};
}

} // namespace

SongReader::SongReader() : m_engine(std::make_unique<host::EngineSession>(silentSettings())) {}

SongReader::~SongReader() {
    m_engine.reset();
    corvmo_SetOutputs(nullptr, 0);
    corvmo_UseRealClock();
}

host::RawSong SongReader::read(const host::SongFile& file) {
    return host::loadSong(m_engine->player(), file);
}

host::RawSong readSong(const std::string& path) {
    return SongReader().read(host::SongFile(path));
}

} // namespace karaoke
