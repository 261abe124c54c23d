// Other readers and players of MIDI files, each as its own library does it.
#pragma once

#include <memory>
#include <string>

namespace bench {

/// FluidSynth's player on a synthesizer without a sound font; its events go to a function that does nothing.
class FluidPlayer {
public:
    FluidPlayer();
    ~FluidPlayer();
    FluidPlayer(const FluidPlayer&) = delete;
    FluidPlayer& operator=(const FluidPlayer&) = delete;

    /// Names the file that the next step loads.
    void add(const std::string& file);
    /// Loads what was added, and plays what is due; FluidSynth loads in the first block that it renders.
    void step();
    /// Makes the next step play every event that there is, however far away.
    void rush();
    /// Makes the next step go to a tick.
    void seek(int tick);
    int length() const;

private:
    struct Parts;
    std::unique_ptr<Parts> m_parts;
};

/// WildMIDI without instruments. Opening merges the tracks.
class WildReader {
public:
    WildReader();
    ~WildReader();
    WildReader(const WildReader&) = delete;
    WildReader& operator=(const WildReader&) = delete;
    void* open(const std::string& file);
    void close(void* song);
};

/// The song is never given back: for a long track that would take minutes.
void* openWithLibsmf(const std::string& file);

void* openWithPortsmf(const std::string& file);
void closeWithPortsmf(void* song);

/// Runs midicsv on the file, its output thrown away, and answers the seconds of CPU time that it took.
double runMidicsv(const std::string& file);

} // namespace bench
