// The main window from its bottom up: transport strip, position, and above them the stage, which the words
// share with the play list and the mixer.
#include "desktop/main_layout.h"

#include "desktop/mixer_layout.h"

namespace desktop {

namespace {

constexpr int kMargin = 6;
constexpr int kGap = 4;
constexpr int kGroupGap = 12;
constexpr int kStripRow = 26;
constexpr int kPositionHeight = 26;
constexpr int kListWidth = 220;
constexpr int kWordsWidth = 300;  ///< what the words keep beside the play list
constexpr int kWordsHeight = 150; ///< and above the mixer

/// Sets the items in rows that are filled from the left.
class StripRows {
public:
    StripRows(int width, const Scale& scale) : m_width(width), m_scale(scale) {}

    void add(const StripItem& item) {
        const int gap = m_x == 0 ? 0 : m_scale(item.beginsGroup ? kGroupGap : kGap);
        if (m_x > 0 && m_x + gap + item.width > m_width) {
            m_x = 0;
            m_y += m_scale(kStripRow) + m_scale(kGap);
            place(0, item.width);
        } else {
            place(m_x + gap, item.width);
        }
    }

    int height() const {
        return m_y + m_scale(kStripRow);
    }
    /// The boxes, moved to where the strip begins.
    std::vector<Box> at(int x, int y) const {
        std::vector<Box> moved = m_boxes;
        for (Box& box : moved) {
            box = {box.left + x, box.top + y, box.right + x, box.bottom + y};
        }
        return moved;
    }

private:
    void place(int x, int width) {
        m_boxes.push_back({x, m_y, x + width, m_y + m_scale(kStripRow)});
        m_x = x + width;
    }

    int m_width;
    Scale m_scale;
    int m_x = 0;
    int m_y = 0;
    std::vector<Box> m_boxes;
};

/// Gives the stage to the words and to what is shown with them.
void divideStage(Box stage, const Scale& scale, const Shown& shown, MainBoxes& boxes) {
    if (shown.mixer) {
        const Size two = smallestMixer(2, scale);
        const Size one = smallestMixer(1, scale);
        if (stage.width() >= two.width && stage.height() >= two.height + scale(kWordsHeight)) {
            boxes.mixer = {stage.left, stage.bottom - two.height, stage.right, stage.bottom};
            stage.bottom = boxes.mixer.top - scale(kGap);
        } else if (stage.width() >= one.width + scale(kWordsWidth) &&
                   stage.height() >= one.height) {
            boxes.mixer = {stage.right - one.width, stage.top, stage.right, stage.bottom};
            stage.right = boxes.mixer.left - scale(kGap);
        } else {
            boxes.mixer = stage;
            return;
        }
    }
    if (shown.playList) {
        const int wanted = scale(kListWidth);
        if (stage.width() < wanted + scale(kWordsWidth) && !shown.mixer) {
            // Too narrow for both: the list takes what the words can spare.
            boxes.playList = {stage.right - stage.width() / 3, stage.top, stage.right,
                              stage.bottom};
        } else if (stage.width() >= wanted + scale(kWordsWidth)) {
            boxes.playList = {stage.right - wanted, stage.top, stage.right, stage.bottom};
        }
        if (!boxes.playList.empty()) {
            stage.right = boxes.playList.left - scale(kGap);
        }
    }
    boxes.words = stage;
}

} // namespace

MainBoxes layoutMain(Size client, const Scale& scale, const Shown& shown,
                     const std::vector<StripItem>& strip) {
    MainBoxes boxes;
    if (shown.wordsAlone) {
        boxes.words = {0, 0, client.width, client.height};
        boxes.strip.resize(strip.size());
        return boxes;
    }
    const Box inside = Box{0, 0, client.width, client.height}.inner(scale(kMargin));
    StripRows rows(inside.width(), scale);
    for (const StripItem& item : strip) {
        rows.add(item);
    }
    const int stripTop = inside.bottom - rows.height();
    boxes.strip = rows.at(inside.left, stripTop);
    const int positionBottom = stripTop - scale(kGap);
    boxes.position = {inside.left, positionBottom - scale(kPositionHeight), inside.right,
                      positionBottom};
    boxes.message = {0, 0, client.width, shown.messageHeight};
    divideStage({0, boxes.message.bottom, client.width, boxes.position.top - scale(kGap)}, scale,
                shown, boxes);
    return boxes;
}

} // namespace desktop
