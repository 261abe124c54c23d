// The session's thread: takes requests and the engine's notifications in turn, and says where everything stands.
#include "desktop/session.h"

#include <chrono>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <utility>

#include "desktop/song_desk.h"
#include "shared/wide_text.h"

namespace desktop {

namespace {

constexpr DWORD kFrame = 25; ///< milliseconds between two looks at the position

std::uint64_t nowMilliseconds() {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<std::uint64_t>(
        std::chrono::duration_cast<std::chrono::milliseconds>(now).count());
}

bool isNotification(const MSG& message, HWND window) {
    return message.hwnd == window && message.message >= MMN_PROGRAM && message.message <= MMN_LOOP;
}

} // namespace

class Session::Worker {
public:
    Worker(HWND window, OutputChoice outputs)
        : m_window(window), m_outputs(std::move(outputs)),
          m_wake(CreateEventW(nullptr, FALSE, FALSE, nullptr)), m_thread([this] { run(); }) {}

    ~Worker() {
        {
            const std::lock_guard guard(m_mutex);
            m_ending = true;
        }
        SetEvent(m_wake);
        m_thread.join();
        CloseHandle(m_wake);
    }
    Worker(const Worker&) = delete;
    Worker& operator=(const Worker&) = delete;

    using Request = std::function<void(SongDesk&)>;

    void ask(Request request) {
        {
            const std::lock_guard guard(m_mutex);
            m_requests.push_back(std::move(request));
        }
        SetEvent(m_wake);
    }

    void chooseOutputs(const OutputChoice& outputs) {
        {
            const std::lock_guard guard(m_mutex);
            m_newOutputs = outputs;
        }
        SetEvent(m_wake);
    }

    SessionState state() const {
        const std::lock_guard guard(m_mutex);
        return m_state;
    }

    std::wstring takeTrouble() {
        const std::lock_guard guard(m_mutex);
        if (m_trouble.empty()) {
            return {};
        }
        std::wstring first = std::move(m_trouble.front());
        m_trouble.pop_front();
        return first;
    }

private:
    void run();
    void startDesk(const std::optional<SongDesk::Place>& place);
    void takeRequests();
    void takeNotifications();
    void publish();
    bool ending() const {
        const std::lock_guard guard(m_mutex);
        return m_ending;
    }

    /// Does something and tells in words when it fails.
    template <typename Action>
    void attempt(Action action) {
        try {
            action();
        } catch (const std::exception& error) {
            {
                const std::lock_guard guard(m_mutex);
                m_trouble.push_back(host::toWide(error.what()));
            }
            tell(SessionEvent::Trouble);
        }
    }

    void tell(SessionEvent event) const {
        PostMessageW(m_window, kSessionMessage, static_cast<WPARAM>(event), 0);
    }

    HWND m_window;
    OutputChoice m_outputs;
    HWND m_notifications = nullptr;
    std::unique_ptr<SongDesk> m_desk;
    bool m_failed = false; ///< the engine did not start

    mutable std::mutex m_mutex;
    std::deque<Request> m_requests;
    std::optional<OutputChoice> m_newOutputs;
    std::deque<std::wstring> m_trouble;
    SessionState m_state;
    bool m_ending = false;

    HANDLE m_wake;
    std::thread m_thread; ///< last: it uses all others
};

void Session::Worker::run() {
    m_notifications =
        CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
    startDesk(std::nullopt);
    while (!ending()) {
        MsgWaitForMultipleObjects(1, &m_wake, FALSE, kFrame, QS_ALLINPUT);
        takeRequests();
        takeNotifications();
        if (m_desk && m_desk->advance(nowMilliseconds())) {
            tell(SessionEvent::SongEnded);
        }
        publish();
    }
    m_desk.reset();
    DestroyWindow(m_notifications);
}

/// Starts the engine, and goes on with the song of the one before.
void Session::Worker::startDesk(const std::optional<SongDesk::Place>& place) {
    m_desk.reset();
    m_failed = false;
    publish();
    attempt([&] {
        m_desk = std::make_unique<SongDesk>(m_notifications, m_outputs);
        if (place) {
            m_desk->open(place->path);
            m_desk->seek(place->tick);
            if (place->playing) {
                m_desk->playOrPause();
            }
        }
    });
    m_failed = !m_desk;
}

void Session::Worker::takeRequests() {
    std::deque<Request> requests;
    std::optional<OutputChoice> outputs;
    {
        const std::lock_guard guard(m_mutex);
        requests.swap(m_requests);
        outputs = std::exchange(m_newOutputs, std::nullopt);
    }
    if (outputs) {
        m_outputs = *outputs;
        startDesk(m_desk ? m_desk->place() : std::nullopt);
    }
    for (const Request& request : requests) {
        if (m_desk) {
            attempt([&] { request(*m_desk); });
        }
    }
}

void Session::Worker::takeNotifications() {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != 0) {
        if (!isNotification(message, m_notifications)) {
            DispatchMessageW(&message);
        } else if (m_desk) {
            m_desk->take(message, nowMilliseconds());
        }
    }
}

void Session::Worker::publish() {
    SessionState state;
    if (m_desk) {
        state.engine = SessionState::Engine::Runs;
        m_desk->describe(state);
    } else if (m_failed) {
        state.engine = SessionState::Engine::Failed;
    }
    bool changed = false;
    {
        const std::lock_guard guard(m_mutex);
        changed = state.engine != m_state.engine || state.song != m_state.song ||
                  state.playing != m_state.playing;
        m_state = std::move(state);
    }
    if (changed) {
        tell(SessionEvent::StateChanged);
    }
}

Session::Session(HWND window, const OutputChoice& outputs)
    : m_worker(std::make_unique<Worker>(window, outputs)) {}

Session::~Session() = default;

SessionState Session::state() const {
    return m_worker->state();
}

std::wstring Session::takeTrouble() {
    return m_worker->takeTrouble();
}

void Session::ask(std::function<void(SongDesk&)> request) {
    m_worker->ask(std::move(request));
}

void Session::chooseOutputs(const OutputChoice& outputs) {
    m_worker->chooseOutputs(outputs);
}

} // namespace desktop
