// The list of outputs and the handles of those that are open.
#pragma once

#include <mutex>
#include <shared_mutex>
#include <vector>

#include "platform/linux/midi_output.h"

/// Safe for any thread. Opening, closing and listing wait for one another; sending waits for none
/// of them longer than it takes to note a handle down.
class OutputRegistry {
public:
    /// An open output, kept open while this lives. Converts to false when the handle is not one.
    class Use {
    public:
        explicit operator bool() const {
            return m_output != nullptr;
        }
        MidiOutput* operator->() const {
            return m_output;
        }
        UINT index() const {
            return m_index;
        }

    private:
        friend class OutputRegistry;
        std::shared_lock<std::shared_mutex> m_lock;
        MidiOutput* m_output = nullptr;
        UINT m_index = 0;
    };

    /// Closes what is open and lists these from now on.
    void setOutputs(MidiOutputs outputs);
    void useMachineOutputs();

    UINT count();
    /// False when there is no such output.
    bool name(UINT index, std::string& name);
    /// Messages that the output has refused in a row; 0 when there is no such output.
    std::uint32_t refusals(UINT index);
    MMRESULT open(UINT index, HMIDIOUT& handle);
    MMRESULT close(HMIDIOUT handle);
    Use use(HMIDIOUT handle);

private:
    struct Entry {
        std::unique_ptr<MidiOutput> output;
        std::uintptr_t handle = 0; ///< 0 = closed
    };

    void replace(MidiOutputs outputs, bool chosen);
    void listIfNeeded();
    void closeEntry(Entry& entry);
    Entry* find(HMIDIOUT handle);

    std::mutex m_changes;        ///< held by whoever changes the list or a handle
    std::shared_mutex m_handles; ///< held in addition while they actually change; shared by senders
    std::vector<Entry> m_entries;
    UINT m_openCount = 0;
    std::uintptr_t m_generation = 0;
    bool m_listed = false;
    bool m_chosen = false; ///< the outputs are those that the host has chosen
};
