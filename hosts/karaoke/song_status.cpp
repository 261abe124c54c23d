// Where a song stands and how it is played, in words.
#include "karaoke/song_status.h"

#include <cmath>

#include "corvmo32_linux.h"
#include "shared/song_facts.h"
#include "shared/time_text.h"

namespace karaoke {

namespace {

constexpr const char* kGap = "   ";

std::string placeText(const Desk& desk) {
    const host::Song& song = desk.controls.song();
    const std::uint32_t tick = desk.controls.position();
    const host::BarPosition place = song.bars.at(tick);
    return host::timeInSeconds(song.timeline.secondsAt(tick)) + " / " +
           host::timeInSeconds(song.seconds()) + kGap + "bar " + std::to_string(place.bar) + ":" +
           std::to_string(place.beat);
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
    return std::string(kGap) + "loop " + std::to_string(bars.at(range.start).bar) + "-" +
           std::to_string(bars.at(end - 1).bar) + " pass " + std::to_string(controls.pass());
}

} // namespace

std::string statusText(const Desk& desk) {
    const host::SongControls& controls = desk.controls;
    const bool paused = desk.begun && !controls.playing() && !controls.ended();
    std::string text = (paused ? std::string("paused") + kGap : "") + placeText(desk) + kGap +
                       tempoText(controls) + kGap + signatureText(controls) + kGap + keyText(desk) +
                       loopText(controls);
    if (controls.metronome()) {
        text += std::string(kGap) + "click";
    }
    return text;
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
