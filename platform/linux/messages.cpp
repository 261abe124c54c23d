// Windows: bounded queues of posted messages. A window's handle is looked up at every use, so that
// posting to one that is gone fails.
#include <chrono>
#include <memory>
#include <mutex>
#include <vector>

#include "platform/linux/faults.h"
#include "platform/linux/handle_table.h"
#include "platform/linux/system_names.h"

namespace {

constexpr std::size_t kQueueLength = 10000;
constexpr std::uint32_t kNoLimit = 0xFFFFFFFF;

class Window {
public:
    bool post(const corvmo_message& message) {
        const std::lock_guard guard(m_mutex);
        if (m_destroyed || m_count == kQueueLength) {
            return false;
        }
        m_ring[(m_first + m_count) % kQueueLength] = message;
        ++m_count;
        m_changed.notifyOne();
        return true;
    }

    bool take(corvmo_message& message, std::uint32_t timeout) {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeout);
        const std::lock_guard guard(m_mutex);
        bool inTime = timeout != 0;
        while (m_count == 0 && !m_destroyed && inTime) {
            if (timeout == kNoLimit) {
                m_changed.wait(m_mutex);
            } else {
                inTime = m_changed.waitUntil(m_mutex, deadline);
            }
        }
        if (m_count == 0 || m_destroyed) {
            return false;
        }
        message = m_ring[m_first];
        m_first = (m_first + 1) % kQueueLength;
        --m_count;
        return true;
    }

    void destroy() {
        const std::lock_guard guard(m_mutex);
        m_destroyed = true;
        m_changed.notifyAll();
    }

private:
    PriorityMutex m_mutex;
    Condition m_changed;
    std::vector<corvmo_message> m_ring = std::vector<corvmo_message>(kQueueLength);
    std::size_t m_first = 0;
    std::size_t m_count = 0;
    bool m_destroyed = false;
};

HandleTable<Window, HWND>& windows() {
    static auto& instance = *new HandleTable<Window, HWND>;
    return instance;
}

} // namespace

BOOL PostMessageA(HWND handle, UINT message, WPARAM wParam, LPARAM lParam) {
    if (faults::fails("PostMessageA")) {
        return 0;
    }
    const std::shared_ptr<Window> window = windows().find(handle);
    return window && window->post({message, wParam, lParam, corvmo_GetClock()}) ? 1 : 0;
}

HWND corvmo_CreateWindow(void) {
    return windows().add(std::make_shared<Window>());
}

void corvmo_DestroyWindow(HWND handle) {
    if (const std::shared_ptr<Window> window = windows().remove(handle)) {
        window->destroy();
    }
}

int corvmo_WaitMessage(HWND handle, corvmo_message* message, uint32_t timeout) {
    const std::shared_ptr<Window> window = windows().find(handle);
    return window && message != nullptr && window->take(*message, timeout) ? 1 : 0;
}
