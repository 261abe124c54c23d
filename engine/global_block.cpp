// Obtains and releases locked blocks of the global heap.
#include "engine/global_block.h"

#include "corvmo32_errors.h"

GlobalBlock obtainBlock(UINT flags, std::size_t bytes) noexcept {
    GlobalBlock block;
    block.mem = GlobalAlloc(flags, bytes);
    if (block.mem == nullptr) {
        block.error = ENGINE_ERR_ALLOC;
        return block;
    }
    block.address = GlobalLock(block.mem);
    if (block.address == nullptr) {
        GlobalFree(block.mem);
        block.mem = nullptr;
        block.error = ENGINE_ERR_LOCK;
    }
    return block;
}

void releaseBlock(HGLOBAL mem, const void* address) noexcept {
    if (address != nullptr) {
        GlobalUnlock(mem);
        GlobalFree(mem);
    }
}
