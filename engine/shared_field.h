// Reads and writes of record fields that two threads may touch at the same time without a guard: the
// position and tempo that getters read, the routes, and the settings that a host stores after a wait.
#pragma once

/// One whole, unordered read. The field may be unaligned: the records are packed.
template <typename Field>
Field loadShared(const void* field) noexcept {
    return __atomic_load_n(static_cast<const Field*>(field), __ATOMIC_RELAXED);
}

/// One whole, unordered write.
template <typename Field>
void storeShared(void* field, Field value) noexcept {
    __atomic_store_n(static_cast<Field*>(field), value, __ATOMIC_RELAXED);
}
