// What the keys of the player do.
#include "karaoke/player_keys.h"

#include <algorithm>
#include <array>

#include "corvmo32_linux.h"
#include "shared/gm_names.h"
#include "shared/song_facts.h"

namespace karaoke {

namespace {

constexpr std::uint64_t kNoticeTime = 4'000'000; ///< microseconds
constexpr int kFadeSeconds = 5;
constexpr int kOffsetStep = 50; ///< milliseconds
constexpr int kMixStep = 4;
constexpr int kHighestProgram = 127;

constexpr KeyHelp kHelp[] = {
    {"space", "pause, go on"},
    {"left right", "a bar back, on"},
    {"[ ]", "marker before, next"},
    {"0 home", "from the beginning"},
    {"a b c", "loop: start, end, off"},
    {"up down", "faster, slower"},
    {"+ -", "key up, down"},
    {", . tab", "choose a channel"},
    {"m s", "its mute, solo"},
    {"v V", "its volume up, down"},
    {"l L", "its pan right, left"},
    {"e E", "its reverb up, down"},
    {"h H", "its chorus up, down"},
    {"i I", "next, last instrument"},
    {"u", "the channel as it was"},
    {"k", "metronome"},
    {"f", "fade out"},
    {"x", "silence all notes"},
    {"o O", "words later, earlier"},
    {"t", "another encoding"},
    {"r R", "last settings, forget"},
    {"n p", "next, previous song"},
    {"?", "this page"},
    {"q", "quit"},
};

/// Tried in turn; the empty one is guessed.
constexpr std::array kEncodings = {"",      "UTF-8", "WINDOWS-1252", "WINDOWS-1250", "WINDOWS-1251",
                                   "CP932", "UHC",   "GB18030",      "BIG5"};

std::string channelText(int channel) {
    return "channel " + std::to_string(channel + 1) + ": ";
}

std::string barText(const host::Song& song, std::uint32_t tick) {
    return "bar " + std::to_string(song.bars.at(tick).bar);
}

} // namespace

std::span<const KeyHelp> keyHelp() {
    return kHelp;
}

const PlayerKeys::Binding PlayerKeys::kBindings[] = {
    {&PlayerKeys::pause, ' ', 0},
    {&PlayerKeys::rewind, '0', 0},
    {&PlayerKeys::rewind, kHomeKey, 0},
    {&PlayerKeys::seekBars, kLeftKey, -1},
    {&PlayerKeys::seekBars, kRightKey, 1},
    {&PlayerKeys::seekMarker, '[', -1},
    {&PlayerKeys::seekMarker, kPageUpKey, -1},
    {&PlayerKeys::seekMarker, ']', 1},
    {&PlayerKeys::seekMarker, kPageDownKey, 1},
    {&PlayerKeys::loopStart, 'a', 0},
    {&PlayerKeys::loopEnd, 'b', 0},
    {&PlayerKeys::loopClear, 'c', 0},
    {&PlayerKeys::tempo, kUpKey, 1},
    {&PlayerKeys::tempo, kDownKey, -1},
    {&PlayerKeys::transpose, '+', 1},
    {&PlayerKeys::transpose, '=', 1},
    {&PlayerKeys::transpose, '-', -1},
    {&PlayerKeys::selectChannel, '.', 1},
    {&PlayerKeys::selectChannel, kTabKey, 1},
    {&PlayerKeys::selectChannel, ',', -1},
    {&PlayerKeys::selectChannel, kBackTabKey, -1},
    {&PlayerKeys::mute, 'm', 0},
    {&PlayerKeys::solo, 's', 0},
    {&PlayerKeys::volume, 'v', kMixStep},
    {&PlayerKeys::volume, 'V', -kMixStep},
    {&PlayerKeys::pan, 'l', kMixStep},
    {&PlayerKeys::pan, 'L', -kMixStep},
    {&PlayerKeys::reverb, 'e', kMixStep},
    {&PlayerKeys::reverb, 'E', -kMixStep},
    {&PlayerKeys::chorus, 'h', kMixStep},
    {&PlayerKeys::chorus, 'H', -kMixStep},
    {&PlayerKeys::instrument, 'i', 1},
    {&PlayerKeys::instrument, 'I', -1},
    {&PlayerKeys::resetChannel, 'u', 0},
    {&PlayerKeys::fadeOut, 'f', kFadeSeconds},
    {&PlayerKeys::metronome, 'k', 0},
    {&PlayerKeys::panic, 'x', 0},
    {&PlayerKeys::displayOffset, 'o', kOffsetStep},
    {&PlayerKeys::displayOffset, 'O', -kOffsetStep},
    {&PlayerKeys::encoding, 't', 0},
    {&PlayerKeys::useRemembered, 'r', 0},
    {&PlayerKeys::forget, 'R', 0},
    {&PlayerKeys::help, '?', 0},
    {&PlayerKeys::leave, 'n', static_cast<int>(KeyOutcome::Next)},
    {&PlayerKeys::leave, 'p', static_cast<int>(KeyOutcome::Previous)},
    {&PlayerKeys::leave, 'q', static_cast<int>(KeyOutcome::Quit)},
};

KeyOutcome PlayerKeys::press(Key key) {
    if (key == kNoKey) {
        return KeyOutcome::GoOn;
    }
    if (m_desk.help && key != 'q') {
        m_desk.help = false;
        return KeyOutcome::GoOn;
    }
    const auto* const binding =
        std::find_if(std::begin(kBindings), std::end(kBindings),
                     [key](const Binding& candidate) { return candidate.key == key; });
    if (binding != std::end(kBindings)) {
        (this->*binding->action)(binding->amount);
    }
    return m_outcome;
}

void PlayerKeys::tell(const std::string& notice) {
    m_desk.notice = notice;
    m_desk.noticeEnd = corvmo_GetClock() + kNoticeTime;
}

void PlayerKeys::leave(int outcome) {
    m_outcome = static_cast<KeyOutcome>(outcome);
}

// Transport; a companion goes along.

void PlayerKeys::pause(int /*amount*/) {
    const bool playing = m_desk.controls.playing();
    for (host::SongControls* song : {&m_desk.controls, m_companion}) {
        if (song != nullptr && playing) {
            song->pause();
        } else if (song != nullptr) {
            song->play();
        }
    }
}

void PlayerKeys::rewind(int /*amount*/) {
    for (host::SongControls* song : {&m_desk.controls, m_companion}) {
        if (song != nullptr) {
            song->rewind();
        }
    }
    tell("from the beginning");
}

void PlayerKeys::seekBars(int bars) {
    m_desk.controls.seekBars(bars);
    tell(barText(m_desk.controls.song(), m_desk.controls.position()));
}

void PlayerKeys::seekMarker(int direction) {
    if (m_desk.controls.seekMarker(direction)) {
        tell(barText(m_desk.controls.song(), m_desk.controls.position()));
    } else {
        tell(direction > 0 ? "there is no later marker" : "there is no earlier marker");
    }
}

void PlayerKeys::loopStart(int /*amount*/) {
    const host::Song& song = m_desk.controls.song();
    // A loop keeps to the beat.
    m_desk.loopStart = song.bars.tickOf(song.bars.at(m_desk.controls.position()).bar);
    tell("loop from " + barText(song, *m_desk.loopStart) + "; b sets its end");
}

void PlayerKeys::loopEnd(int /*amount*/) {
    if (!m_desk.loopStart) {
        tell("a sets the loop's start first");
        return;
    }
    const host::Song& song = m_desk.controls.song();
    const std::uint32_t end = song.bars.tickOf(song.bars.at(m_desk.controls.position()).bar + 1);
    m_desk.controls.setLoop(*m_desk.loopStart, end);
    tell("loop from " + barText(song, *m_desk.loopStart) + " to the end of " +
         barText(song, end - 1) + "; c ends it");
    m_desk.loopStart.reset();
}

void PlayerKeys::loopClear(int /*amount*/) {
    m_desk.loopStart.reset();
    m_desk.controls.clearLoop();
    tell("no loop");
}

void PlayerKeys::fadeOut(int seconds) {
    for (host::SongControls* song : {&m_desk.controls, m_companion}) {
        if (song != nullptr) {
            song->fadeOutNow(seconds);
        }
    }
    tell("fading out");
}

void PlayerKeys::panic(int /*amount*/) {
    for (host::SongControls* song : {&m_desk.controls, m_companion}) {
        if (song != nullptr) {
            song->panic();
        }
    }
    tell("all notes silenced");
}

// The sound of the song.

void PlayerKeys::tempo(int percent) {
    m_desk.controls.setTempoPercent(m_desk.controls.tempoPercent() + static_cast<float>(percent));
    tell("tempo " + host::signedText(m_desk.controls.tempoPercent()) + " %");
}

void PlayerKeys::transpose(int semitones) {
    m_desk.controls.setTranspose(m_desk.controls.settings().transpose + semitones);
    tell("key " + host::signedText(m_desk.controls.settings().transpose));
}

void PlayerKeys::metronome(int /*amount*/) {
    m_desk.controls.setMetronome(!m_desk.controls.metronome());
    tell(m_desk.controls.metronome() ? "metronome on" : "metronome off");
}

// The chosen channel.

const host::ChannelSettings& PlayerKeys::channel() const {
    return m_desk.controls.settings().channels.at(static_cast<std::size_t>(m_desk.channel));
}

/// Goes over channels that the song does not use.
void PlayerKeys::selectChannel(int steps) {
    for (int tries = 0; tries < host::kChannels; ++tries) {
        m_desk.channel = (m_desk.channel + steps + host::kChannels) % host::kChannels;
        if (m_desk.used.none() || m_desk.used.test(static_cast<std::size_t>(m_desk.channel))) {
            break;
        }
    }
}

void PlayerKeys::changeChannel(const host::ChannelSettings& settings, const std::string& notice) {
    m_desk.controls.setChannel(m_desk.channel, settings);
    tell(channelText(m_desk.channel) + notice);
}

void PlayerKeys::mute(int /*amount*/) {
    host::ChannelSettings settings = channel();
    settings.muted = !settings.muted;
    changeChannel(settings, settings.muted ? "muted" : "not muted");
}

void PlayerKeys::solo(int /*amount*/) {
    host::ChannelSettings settings = channel();
    settings.solo = !settings.solo;
    changeChannel(settings, settings.solo ? "solo" : "not solo");
}

void PlayerKeys::offset(int host::ChannelSettings::*value, int amount, const char* name) {
    host::ChannelSettings settings = channel();
    settings.*value = std::clamp(settings.*value + amount, -host::kMostOffset, host::kMostOffset);
    changeChannel(settings, std::string(name) + " " + host::signedText(settings.*value));
}

void PlayerKeys::volume(int amount) {
    offset(&host::ChannelSettings::volume, amount, "volume");
}

void PlayerKeys::pan(int amount) {
    offset(&host::ChannelSettings::pan, amount, "pan");
}

void PlayerKeys::reverb(int amount) {
    offset(&host::ChannelSettings::reverb, amount, "reverb");
}

void PlayerKeys::chorus(int amount) {
    offset(&host::ChannelSettings::chorus, amount, "chorus");
}

/// Begins at the instrument that plays.
void PlayerKeys::instrument(int steps) {
    host::ChannelSettings settings = channel();
    const int playing = settings.program != host::kSongsProgram
                            ? settings.program
                            : m_desk.controls.state().channel(m_desk.channel).program;
    settings.program = std::clamp(std::max(playing, 0) + steps, 0, kHighestProgram);
    const bool drums = m_desk.channel == host::kDrumChannel;
    changeChannel(
        settings,
        std::to_string(settings.program + 1) +
            (drums ? " drum set" : " " + std::string(host::instrumentName(settings.program))));
}

void PlayerKeys::resetChannel(int /*amount*/) {
    changeChannel({}, "as the song has it");
}

// Words, settings of last time, help.

void PlayerKeys::displayOffset(int milliseconds) {
    m_desk.controls.setDisplayOffset(m_desk.controls.settings().displayOffset + milliseconds);
    tell("words " + host::signedText(m_desk.controls.settings().displayOffset) + " ms");
}

void PlayerKeys::encoding(int /*amount*/) {
    const auto* const current =
        std::find(kEncodings.begin(), kEncodings.end(), m_desk.controls.settings().encoding);
    const auto* const next = current >= kEncodings.end() - 1 ? kEncodings.begin() : current + 1;
    m_desk.controls.setEncoding(*next, m_song.song(*next));
    tell("texts read as " + m_desk.controls.song().encoding +
         (**next == '\0' ? ", as guessed" : ""));
}

void PlayerKeys::useRemembered(int /*amount*/) {
    if (!m_remembered.offered()) {
        tell("there are no settings of last time");
        return;
    }
    const host::SongSettings settings = m_remembered.use(m_desk.controls.settings());
    m_desk.controls.setSettings(settings);
    m_desk.controls.setEncoding(settings.encoding, m_song.song(settings.encoding));
    tell("as last time: " + host::describe(settings));
}

void PlayerKeys::forget(int /*amount*/) {
    m_remembered.forget(m_desk.controls.settings());
    tell("nothing is remembered of this song");
}

void PlayerKeys::help(int /*amount*/) {
    m_desk.help = true;
}

} // namespace karaoke
