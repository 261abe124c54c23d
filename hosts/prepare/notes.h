// The notes of a mending: lines in words for a person, not more of them than anyone would read.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace host {

struct TrackFindings;

class Notes {
public:
    void add(std::string note);
    bool empty() const {
        return m_count == 0;
    }
    /// The lines, and one that counts those that were left out.
    std::vector<std::string> take();

private:
    std::vector<std::string> m_lines;
    std::size_t m_count = 0;
};

/// "1 byte", "3 bytes".
std::string countOf(std::uint64_t number, const std::string& noun);

/// "the track", "the second track", "track 13".
/// @param index  0 = the first
/// @param count  of all tracks
std::string nameOfTrack(std::size_t index, std::size_t count);

/// A note for each thing that was found wrong in a track.
void noteFindings(const TrackFindings& findings, const std::string& track, Notes& notes);

} // namespace host
