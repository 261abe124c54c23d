// The channels of the full-screen player.
#include <algorithm>
#include <array>
#include <cmath>

#include "karaoke/panels.h"
#include "karaoke/text_width.h"
#include "shared/gm_names.h"

namespace karaoke {

namespace {

constexpr int kColumns = 4; ///< channels beside each other
constexpr int kRowsOfChannels = host::kChannels / kColumns;
constexpr int kNumberWidth = 5; ///< mark, number, switch, space
constexpr int kProgramsOfFamily = 8;
constexpr int kFullVolume = 127;
constexpr int kUsualVolume = 100;
constexpr double kFaintest = 0.04; ///< below it a level shows nothing

/// Short names of the instruments' families.
constexpr std::array kFamilies = {"Piano", "Bells", "Organ", "Guitar", "Bass", "String",
                                  "Choir", "Brass", "Reed",  "Flute",  "Lead", "Pad",
                                  "Synth", "World", "Perc.", "Sound"};

class ChannelsPanel {
public:
    ChannelsPanel(Canvas& canvas, const Rows& rows, const Desk& desk)
        : m_canvas(canvas), m_rows(rows), m_desk(desk), m_settings(desk.controls.settings()),
          m_width((canvas.columns() - 2 * kMargin + 1) / kColumns) {}

    void draw() const {
        for (int channel = 0; channel < host::kChannels; ++channel) {
            drawChannel(channel);
        }
        if (m_rows.count > kRowsOfChannels) {
            m_canvas.putFitted(m_rows.first + kRowsOfChannels, kMargin, chosenText(),
                               m_canvas.columns() - 2 * kMargin, Style::Chosen);
        }
    }

private:
    const host::ChannelSettings& settings(int channel) const {
        return m_settings.channels[static_cast<std::size_t>(channel)];
    }
    bool used(int channel) const {
        return m_desk.used.test(static_cast<std::size_t>(channel));
    }

    void drawChannel(int channel) const {
        const int row = m_rows.first + channel % kRowsOfChannels;
        const int left = kMargin - 1 + channel / kRowsOfChannels * m_width;
        const bool chosen = channel == m_desk.channel;
        const host::ChannelSettings& own = settings(channel);
        const bool silent = !used(channel) || m_settings.silences(channel);
        const Style style = chosen ? Style::Chosen : (silent ? Style::Dim : Style::Plain);
        const std::string number = (channel < 9 ? " " : "") + std::to_string(channel + 1);
        m_canvas.put(row, left, (chosen ? "▸" : " ") + number, style);
        if (own.muted) {
            m_canvas.put(row, left + 3, "M", Style::Muted);
        } else if (own.solo) {
            m_canvas.put(row, left + 3, "S", Style::Solo);
        }
        if (!used(channel)) {
            m_canvas.put(row, left + kNumberWidth, "·", Style::Dim);
            return;
        }
        const int meter = std::clamp(m_width / 5, 2, 8);
        const int name = m_width - kNumberWidth - meter - 1;
        m_canvas.putFitted(row, left + kNumberWidth, instrument(channel, name), name, style);
        drawLevel(row, left + m_width - meter, meter, channel);
    }

    void drawLevel(int row, int left, int width, int channel) const {
        const host::ChannelActivity& activity = m_desk.controls.state().channel(channel);
        const int song = activity.volume < 0 ? kUsualVolume : activity.volume;
        const double volume = std::clamp(song + settings(channel).volume, 0, kFullVolume);
        const double level = activity.level * std::sqrt(volume / kFullVolume);
        const int full = m_settings.silences(channel) || level < kFaintest
                             ? 0
                             : std::clamp(static_cast<int>(std::ceil(level * width)), 0, width);
        for (int column = 0; column < width; ++column) {
            const bool lit = column < full;
            m_canvas.put(row, left + column, lit ? "▮" : "·", lit ? Style::Level : Style::Dim);
        }
    }

    int program(int channel) const {
        const int own = settings(channel).program;
        const int song = m_desk.controls.state().channel(channel).program;
        return std::clamp(own != host::kSongsProgram ? own : song, 0, kFullVolume);
    }

    /// The instrument, or what kind it is where its name does not fit.
    std::string instrument(int channel, int width) const {
        if (channel == host::kDrumChannel) {
            return "Drums";
        }
        const std::string name(host::instrumentName(program(channel)));
        const auto family = static_cast<std::size_t>(program(channel) / kProgramsOfFamily);
        return columnsOf(name) <= width ? name : kFamilies[family];
    }

    std::string chosenText() const {
        const int channel = m_desk.channel;
        const host::ChannelSettings& own = settings(channel);
        return "channel " + std::to_string(channel + 1) + ": " +
               instrument(channel, m_canvas.columns()) + "   volume " +
               host::signedText(own.volume) + "   pan " + host::signedText(own.pan) + "   reverb " +
               host::signedText(own.reverb) + "   chorus " + host::signedText(own.chorus);
    }

    Canvas& m_canvas;
    Rows m_rows;
    const Desk& m_desk;
    const host::SongSettings& m_settings;
    int m_width;
};

} // namespace

void drawChannels(Canvas& canvas, const Rows& rows, const Desk& desk) {
    ChannelsPanel(canvas, rows, desk).draw();
}

} // namespace karaoke
