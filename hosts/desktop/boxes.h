// Rectangles and lengths of the screen, without the system's types: layouts are worked out on them alone.
#pragma once

#include <algorithm>

namespace desktop {

struct Size {
    int width = 0;
    int height = 0;
    bool operator==(const Size&) const = default;
};

/// Right and bottom lie outside.
struct Box {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;

    int width() const {
        return right - left;
    }
    int height() const {
        return bottom - top;
    }
    Size size() const {
        return {width(), height()};
    }
    bool empty() const {
        return width() <= 0 || height() <= 0;
    }
    bool contains(int x, int y) const {
        return x >= left && x < right && y >= top && y < bottom;
    }
    bool overlaps(const Box& other) const {
        return !empty() && !other.empty() && left < other.right && other.left < right &&
               top < other.bottom && other.top < bottom;
    }
    bool within(const Box& outer) const {
        return left >= outer.left && top >= outer.top && right <= outer.right &&
               bottom <= outer.bottom;
    }
    /// Smaller by a margin on all sides.
    Box inner(int margin) const {
        return {left + margin, top + margin, right - margin, bottom - margin};
    }
    bool operator==(const Box&) const = default;
};

/// Turns lengths meant for 96 dots to the inch into those of a screen.
class Scale {
public:
    explicit Scale(int dpi) : m_dpi(dpi) {}
    int operator()(int length) const {
        return (length * m_dpi + kUsualDpi / 2) / kUsualDpi;
    }
    int dpi() const {
        return m_dpi;
    }

    static constexpr int kUsualDpi = 96;

private:
    int m_dpi;
};

} // namespace desktop
