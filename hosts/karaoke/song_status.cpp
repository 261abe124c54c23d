// Where a song stands and how it is played, in words.
#include "karaoke/song_status.h"

#include <cmath>
#include <span>

#include "corvmo32_linux.h"
#include "karaoke/text_width.h"
#include "shared/song_facts.h"
#include "shared/time_text.h"

namespace karaoke {

namespace {

std::string joined(std::span<const std::string> parts, const char* gap) {
    std::string text;
    for (const std::string& part : parts) {
        text += (text.empty() || part.empty() ? "" : gap) + part;
    }
    return text;
}

std::string timeText(const host::SongControls& controls) {
    const host::Song& song = controls.song();
    return host::timeInSeconds(song.timeline.secondsAt(controls.position())) + " / " +
           host::timeInSeconds(song.seconds());
}

std::string barText(const host::SongControls& controls) {
    const host::BarPosition place = controls.song().bars.at(controls.position());
    return "bar " + std::to_string(place.bar) + ":" + std::to_string(place.beat);
}

std::string tempoText(const host::SongControls& controls) {
    std::string text = std::to_string(std::lround(host::beatsPerMinute(controls.tempo()))) + " bpm";
    if (controls.tempoPercent() != 0) {
        text += " " + host::signedText(controls.tempoPercent()) + "%";
    }
    return text;
}

std::string signatureText(const host::SongControls& controls) {
    const host::TimeSignature signature = controls.song().bars.signatureAt(controls.position());
    return std::to_string(signature.beatsPerBar) + "/" + std::to_string(signature.beatUnit);
}

std::string keyText(const Desk& desk) {
    std::string text = host::keyName(desk.keySignature);
    const int transpose = desk.controls.settings().transpose;
    if (transpose != 0) {
        text += " " + host::signedText(transpose);
    }
    return text;
}

std::string loopText(const host::SongControls& controls) {
    const host::BarGrid& bars = controls.song().bars;
    if (controls.ranges().empty()) {
        return {};
    }
    const host::PlayRange& range = controls.ranges().front();
    const std::uint32_t end = range.end == 0 ? controls.song().endTick : range.end;
    return "loop " + std::to_string(bars.at(range.start).bar) + "-" +
           std::to_string(bars.at(end - 1).bar) + " pass " + std::to_string(controls.pass());
}

} // namespace

std::string statusText(const Desk& desk, int width) {
    const host::SongControls& controls = desk.controls;
    const bool paused = desk.begun && !controls.playing() && !controls.ended();
    const std::string parts[] = {paused ? "paused" : "", timeText(controls),
                                 barText(controls),      tempoText(controls),
                                 loopText(controls),     signatureText(controls),
                                 keyText(desk),          controls.metronome() ? "click" : ""};
    const std::string roomy = joined(parts, "   ");
    return columnsOf(roomy) <= width ? roomy : fitted(joined(parts, "  "), width);
}

std::string titleText(const Desk& desk) {
    const host::Song& song = desk.controls.song();
    std::string text = song.title;
    if (!song.subtitle.empty()) {
        text += " - " + song.subtitle;
    }
    return desk.companion.empty() ? text : text + " & " + desk.companion;
}

std::string noticeText(const Desk& desk) {
    if (corvmo_GetClock() < desk.noticeEnd) {
        return desk.notice;
    }
    return desk.loopStart ? "b sets the end of the loop" : "";
}

} // namespace karaoke
