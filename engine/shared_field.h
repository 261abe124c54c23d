// Reads and writes of record fields that two threads may touch at the same time without a guard: what
// getters read, the routes, and the settings that a host stores after a wait.
#pragma once

#include <cstddef>
#include <cstdint>

/// One whole, unordered read. The field may be unaligned: the records are packed.
template <typename Field>
Field loadShared(const void* field) noexcept {
    Field value;
    __atomic_load(static_cast<const Field*>(field), &value, __ATOMIC_RELAXED);
    return value;
}

/// One whole, unordered write.
template <typename Field>
void storeShared(void* field, Field value) noexcept {
    __atomic_store(static_cast<Field*>(field), &value, __ATOMIC_RELAXED);
}

/// Sets every byte of a stretch, byte by byte.
inline void fillShared(void* begin, std::uint8_t value, std::size_t size) noexcept {
    auto* const bytes = static_cast<std::uint8_t*>(begin);
    for (std::size_t i = 0; i < size; ++i) {
        storeShared<std::uint8_t>(bytes + i, value);
    }
}
