// A locked block of the global heap.
#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/system.h"

/// A block and its locked address; both null when it could not be had.
struct GlobalBlock {
    HGLOBAL mem = nullptr;
    void* address = nullptr;
    std::uint32_t error = 0; ///< ENGINE_ERR_ALLOC or ENGINE_ERR_LOCK: which step failed

    explicit operator bool() const noexcept {
        return address != nullptr;
    }
};

/// Allocates and locks a block. One that cannot be locked is freed at once.
GlobalBlock obtainBlock(UINT flags, std::size_t bytes) noexcept;

/// Unlocks and frees a block whose locked address is set.
void releaseBlock(HGLOBAL mem, const void* address) noexcept;
