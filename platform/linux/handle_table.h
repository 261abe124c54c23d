// Opaque handles and what they stand for. A handle is a number that is never an address and never
// given out twice, so that a stale or foreign one is simply not found.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <unordered_map>

#include "platform/linux/priority_mutex.h"

/// One sequence for every kind of handle: none is ever mistaken for one of another kind.
inline std::uintptr_t nextHandle() {
    constexpr std::uintptr_t kFirst = 0x1000;
    constexpr std::uintptr_t kStep = 4;
    static std::atomic<std::uintptr_t> s_next = kFirst;
    return s_next.fetch_add(kStep, std::memory_order_relaxed);
}

/// Looking up takes no memory. Safe for any thread.
template <class Thing, class Handle>
class HandleTable {
public:
    Handle add(std::shared_ptr<Thing> thing) {
        const std::uintptr_t key = nextHandle();
        const std::lock_guard guard(m_mutex);
        m_things.emplace(key, std::move(thing));
        return reinterpret_cast<Handle>(key);
    }

    /// Null when there is no such handle.
    std::shared_ptr<Thing> find(Handle handle) {
        const std::lock_guard guard(m_mutex);
        const auto found = m_things.find(reinterpret_cast<std::uintptr_t>(handle));
        return found == m_things.end() ? nullptr : found->second;
    }

    /// Ends the handle and gives back what it stood for.
    std::shared_ptr<Thing> remove(Handle handle) {
        const std::lock_guard guard(m_mutex);
        auto node = m_things.extract(reinterpret_cast<std::uintptr_t>(handle));
        return node.empty() ? nullptr : std::move(node.mapped());
    }

private:
    PriorityMutex m_mutex;
    std::unordered_map<std::uintptr_t, std::shared_ptr<Thing>> m_things;
};
