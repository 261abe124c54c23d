// Blocks of the global heap. The handle of a fixed block is its address; that of a moveable block
// is a cell that holds the address. Plain heap memory underneath, so that a leak checker sees what
// is not freed.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <new>
#include <unordered_map>

#include "platform/linux/faults.h"
#include "platform/linux/system_names.h"

struct HGLOBAL__ {
    void* data;
};

namespace {

struct Block {
    std::size_t bytes;
    UINT locks;
    bool moveable;
};

struct Blocks {
    std::mutex mutex;
    std::unordered_map<std::uintptr_t, Block> byKey;
};

Blocks& blocks() {
    static Blocks& instance = *new Blocks;
    return instance;
}

// The complement: a leak checker that met the handle itself in the table would take the block for
// used.
std::uintptr_t keyOf(HGLOBAL handle) {
    return ~reinterpret_cast<std::uintptr_t>(handle);
}

Block* findBlock(Blocks& all, HGLOBAL handle) {
    const auto found = all.byKey.find(keyOf(handle));
    return found == all.byKey.end() ? nullptr : &found->second;
}

void* dataOf(HGLOBAL handle, const Block& block) {
    return block.moveable ? handle->data : handle;
}

// An empty block has an address too.
std::size_t heapBytes(std::size_t bytes) {
    return bytes == 0 ? 1 : bytes;
}

HGLOBAL makeHandle(void* data, bool moveable) {
    if (!moveable) {
        return static_cast<HGLOBAL>(data);
    }
    return new (std::nothrow) HGLOBAL__{data};
}

bool remember(HGLOBAL handle, const Block& block) {
    Blocks& all = blocks();
    const std::lock_guard guard(all.mutex);
    try {
        all.byKey.emplace(keyOf(handle), block);
    } catch (const std::bad_alloc&) {
        return false;
    }
    return true;
}

// The block's new address; null, and the block as it was, when it cannot be had.
void* resize(HGLOBAL handle, const Block& block, std::size_t bytes) {
    if (!block.moveable) {
        return std::realloc(handle, heapBytes(bytes));
    }
    void* const moved = std::realloc(handle->data, heapBytes(bytes));
    if (moved != nullptr) {
        handle->data = moved;
    }
    return moved;
}

// A fixed block that moves gets a new handle and with it a new key.
HGLOBAL renameFixed(Blocks& all, std::uintptr_t key, void* moved) {
    auto node = all.byKey.extract(key);
    const auto renamed = static_cast<HGLOBAL>(moved);
    node.key() = keyOf(renamed);
    all.byKey.insert(std::move(node));
    return renamed;
}

} // namespace

HGLOBAL GlobalAlloc(UINT flags, std::size_t bytes) {
    if (faults::fails("GlobalAlloc")) {
        return nullptr;
    }
    const bool moveable = (flags & GMEM_MOVEABLE) != 0;
    const bool zeroed = (flags & GMEM_ZEROINIT) != 0;
    void* data = zeroed ? std::calloc(1, heapBytes(bytes)) : std::malloc(heapBytes(bytes));
    if (data == nullptr) {
        return nullptr;
    }
    HGLOBAL handle = makeHandle(data, moveable);
    if (handle == nullptr || !remember(handle, Block{bytes, 0, moveable})) {
        if (moveable) {
            delete handle;
        }
        std::free(data);
        return nullptr;
    }
    return handle;
}

HGLOBAL GlobalReAlloc(HGLOBAL handle, std::size_t bytes, UINT flags) {
    if (faults::fails("GlobalReAlloc")) {
        return nullptr;
    }
    Blocks& all = blocks();
    const std::lock_guard guard(all.mutex);
    Block* block = findBlock(all, handle);
    if (block == nullptr) {
        return nullptr;
    }
    const bool pinned = !block->moveable || block->locks > 0;
    if (pinned && (flags & GMEM_MOVEABLE) == 0) {
        // Whether the heap could grow the block in place is not known before it has moved.
        return bytes <= block->bytes ? handle : nullptr;
    }
    const std::uintptr_t key = keyOf(handle);
    void* const moved = resize(handle, *block, bytes);
    if (moved == nullptr) {
        return nullptr;
    }
    if ((flags & GMEM_ZEROINIT) != 0 && bytes > block->bytes) {
        std::memset(static_cast<char*>(moved) + block->bytes, 0, bytes - block->bytes);
    }
    block->bytes = bytes;
    return block->moveable ? handle : renameFixed(all, key, moved);
}

std::size_t GlobalSize(HGLOBAL handle) {
    Blocks& all = blocks();
    const std::lock_guard guard(all.mutex);
    const Block* block = findBlock(all, handle);
    return block == nullptr ? 0 : block->bytes;
}

void* GlobalLock(HGLOBAL handle) {
    if (faults::fails("GlobalLock")) {
        return nullptr;
    }
    Blocks& all = blocks();
    const std::lock_guard guard(all.mutex);
    Block* block = findBlock(all, handle);
    if (block == nullptr) {
        return nullptr;
    }
    if (block->moveable) {
        ++block->locks;
    }
    return dataOf(handle, *block);
}

BOOL GlobalUnlock(HGLOBAL handle) {
    if (faults::fails("GlobalUnlock")) {
        return 0;
    }
    Blocks& all = blocks();
    const std::lock_guard guard(all.mutex);
    Block* block = findBlock(all, handle);
    if (block == nullptr || (block->moveable && block->locks == 0)) {
        return 0;
    }
    if (!block->moveable) {
        return 1;
    }
    --block->locks;
    return block->locks > 0 ? 1 : 0;
}

HGLOBAL GlobalFree(HGLOBAL handle) {
    if (faults::fails("GlobalFree") || handle == nullptr) {
        return handle;
    }
    Blocks& all = blocks();
    const std::lock_guard guard(all.mutex);
    const auto found = all.byKey.find(keyOf(handle));
    if (found == all.byKey.end()) {
        return handle;
    }
    const bool moveable = found->second.moveable;
    all.byKey.erase(found);
    if (moveable) {
        std::free(handle->data);
        delete handle;
    } else {
        std::free(handle);
    }
    return nullptr;
}
