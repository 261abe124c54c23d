// Keys of the listener.
#pragma once

namespace karaoke {

/// A character, or one of the names below.
using Key = int;

inline constexpr Key kNoKey = 0;
inline constexpr Key kTabKey = '\t';

/// Beyond all characters.
enum NamedKey : Key {
    kLeftKey = 0x110000,
    kRightKey,
    kUpKey,
    kDownKey,
    kHomeKey,
    kPageUpKey,
    kPageDownKey,
    kBackTabKey,
    kOtherKey, ///< one that means nothing here
};

} // namespace karaoke
