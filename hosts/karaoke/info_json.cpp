// Facts about a song for other programs.
#include "karaoke/info_json.h"

#include <nlohmann/json.hpp>

#include "shared/gm_names.h"
#include "shared/song_events.h"
#include "shared/song_facts.h"

namespace karaoke {

namespace {

using Json = nlohmann::ordered_json;

constexpr int kIndent = 2;

Json position(const host::Song& song, std::uint32_t tick) {
    return {{"ticks", tick}, {"seconds", song.timeline.secondsAt(tick)}};
}

Json signatures(const host::Song& song) {
    Json list = Json::array();
    for (const host::TimeSignature& signature : song.bars.signatures()) {
        list.push_back({{"ticks", signature.tick},
                        {"beats", signature.beatsPerBar},
                        {"unit", signature.beatUnit}});
    }
    return list;
}

Json markers(const host::Song& song) {
    Json list = Json::array();
    for (const host::Marker& marker : song.markers) {
        Json entry = position(song, marker.tick);
        entry["name"] = marker.name;
        list.push_back(entry);
    }
    return list;
}

/// Channels and programs as musicians count them, from 1.
Json channels(const host::RawSong& raw) {
    Json list = Json::array();
    for (const host::ChannelUse& use : host::channelsInUse(raw.events)) {
        const bool drums = use.channel == host::kDrumChannel;
        Json programs = Json::array();
        for (const int program : use.programs) {
            Json entry = {{"number", program + 1}};
            if (!drums) {
                entry["name"] = host::instrumentName(program);
            }
            programs.push_back(entry);
        }
        list.push_back({{"channel", use.channel + 1},
                        {"drums", drums},
                        {"notes", use.notes},
                        {"programs", programs}});
    }
    return list;
}

} // namespace

std::string infoJson(const host::RawSong& raw, const host::Song& song) {
    const Json facts = {
        {"file", song.path},
        {"format", raw.format},
        {"tracks", raw.tracks},
        {"division", raw.division},
        {"events", raw.events.size()},
        {"length", position(song, song.endTick)},
        {"firstTempo",
         {{"microseconds", raw.firstTempo}, {"bpm", host::beatsPerMinute(raw.firstTempo)}}},
        {"key", host::keyName(raw.keySignature)},
        {"timeSignatures", signatures(song)},
        {"bars", song.bars.at(song.endTick).bar},
        {"title", song.title},
        {"subtitle", song.subtitle},
        {"encoding", song.encoding},
        {"lyrics", song.syllableCount()},
        {"chords", song.chordCount()},
        {"markers", markers(song)},
        {"channels", channels(raw)},
    };
    // A file's name may hold any bytes.
    return facts.dump(kIndent, ' ', false, Json::error_handler_t::replace);
}

} // namespace karaoke
