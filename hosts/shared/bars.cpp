// From song ticks to bars and beats.
#include "shared/bars.h"

#include <algorithm>

#include "shared/song_events.h"

namespace host {

namespace {

constexpr TimeSignature kFirstSignature = {0, 4, 4};
constexpr int kQuartersPerWhole = 4;

} // namespace

BarGrid::BarGrid(const std::vector<MMEVENT>& events, int division) {
    begin(kFirstSignature, division);
    for (const MMEVENT& event : events) {
        if (event.kind == kTimeSignatureEvent && event.byte1 != 0 && event.byte2 != 0) {
            begin({event.time, event.byte1, event.byte2}, division);
        }
    }
}

void BarGrid::begin(const TimeSignature& signature, int division) {
    const int ticks = division * kQuartersPerWhole / signature.beatUnit;
    const auto beatTicks = static_cast<std::uint32_t>(std::max(ticks, 1));
    if (!m_sections.empty() && m_sections.back().signature.tick == signature.tick) {
        m_sections.back() = {signature, m_sections.back().firstBar, beatTicks};
        return;
    }
    std::uint32_t firstBar = 1;
    if (!m_sections.empty()) {
        // A bar that the change cuts short counts as one.
        const Section& before = m_sections.back();
        firstBar = before.firstBar + barsWithin(before, signature.tick - 1) + 1;
    }
    m_sections.push_back({signature, firstBar, beatTicks});
}

std::uint32_t BarGrid::barsWithin(const Section& section, std::uint32_t tick) {
    const std::uint32_t beats = (tick - section.signature.tick) / section.beatTicks;
    return beats / static_cast<std::uint32_t>(section.signature.beatsPerBar);
}

const BarGrid::Section& BarGrid::sectionAt(std::uint32_t tick) const {
    const auto after = std::upper_bound(
        m_sections.begin() + 1, m_sections.end(), tick,
        [](std::uint32_t value, const Section& section) { return value < section.signature.tick; });
    return *(after - 1);
}

BarPosition BarGrid::at(std::uint32_t tick) const {
    const Section& section = sectionAt(tick);
    const std::uint32_t beats = (tick - section.signature.tick) / section.beatTicks;
    const auto perBar = static_cast<std::uint32_t>(section.signature.beatsPerBar);
    return {section.firstBar + beats / perBar, beats % perBar + 1};
}

std::uint32_t BarGrid::tickOf(std::uint32_t bar) const {
    const std::uint32_t wanted = std::max(bar, 1u);
    const auto after = std::upper_bound(
        m_sections.begin() + 1, m_sections.end(), wanted,
        [](std::uint32_t value, const Section& section) { return value < section.firstBar; });
    const Section& section = *(after - 1);
    const auto perBar = static_cast<std::uint32_t>(section.signature.beatsPerBar);
    return section.signature.tick + (wanted - section.firstBar) * perBar * section.beatTicks;
}

std::vector<TimeSignature> BarGrid::signatures() const {
    std::vector<TimeSignature> signatures;
    for (const Section& section : m_sections) {
        signatures.push_back(section.signature);
    }
    return signatures;
}

} // namespace host
