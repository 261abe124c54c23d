// Outputs are listed when somebody first asks and listed afresh once all of them have been closed.
// A handle holds the output's number and a generation, so that finding it is one comparison.
#include "platform/linux/output_registry.h"

#include <algorithm>

namespace {

constexpr unsigned kIndexBits = 12;
constexpr std::uintptr_t kMaxOutputs = std::uintptr_t{1} << kIndexBits;
constexpr std::uintptr_t kIndexMask = kMaxOutputs - 1;

MidiOutputs machineOutputs() {
    MidiOutputs outputs;
    outputs.push_back(makeSynthOutput());
    for (auto& output : listAlsaOutputs()) {
        outputs.push_back(std::move(output));
    }
    return outputs;
}

} // namespace

void OutputRegistry::setOutputs(MidiOutputs outputs) {
    const std::lock_guard guard(m_changes);
    replace(std::move(outputs), true);
}

void OutputRegistry::useMachineOutputs() {
    const std::lock_guard guard(m_changes);
    replace({}, false);
}

void OutputRegistry::replace(MidiOutputs outputs, bool chosen) {
    for (Entry& entry : m_entries) {
        if (entry.handle != 0) {
            closeEntry(entry);
        }
    }
    std::vector<Entry> entries;
    const std::size_t count = std::min<std::size_t>(outputs.size(), kMaxOutputs);
    for (std::size_t index = 0; index < count; ++index) {
        entries.push_back({std::move(outputs[index]), 0});
    }
    const std::lock_guard guard(m_handles);
    m_entries = std::move(entries);
    m_chosen = chosen;
    m_listed = chosen;
}

void OutputRegistry::listIfNeeded() {
    if (!m_listed) {
        replace(machineOutputs(), false);
        m_listed = true;
    }
}

UINT OutputRegistry::count() {
    const std::lock_guard guard(m_changes);
    listIfNeeded();
    return static_cast<UINT>(m_entries.size());
}

bool OutputRegistry::name(UINT index, std::string& name) {
    const std::lock_guard guard(m_changes);
    listIfNeeded();
    if (index >= m_entries.size()) {
        return false;
    }
    name = m_entries[index].output->name();
    return true;
}

std::uint32_t OutputRegistry::refusals(UINT index) {
    const std::shared_lock guard(m_handles);
    return index < m_entries.size() ? m_entries[index].output->refusals() : 0;
}

MMRESULT OutputRegistry::open(UINT index, HMIDIOUT& handle) {
    const std::lock_guard guard(m_changes);
    listIfNeeded();
    if (index >= m_entries.size()) {
        return MMSYSERR_BADDEVICEID;
    }
    Entry& entry = m_entries[index];
    if (entry.handle != 0) {
        return MMSYSERR_ALLOCATED;
    }
    const MMRESULT result = entry.output->open();
    if (result != MMSYSERR_NOERROR) {
        return result;
    }
    entry.output->forgetRefusals();
    ++m_generation;
    ++m_openCount;
    const std::lock_guard handles(m_handles);
    entry.handle = m_generation << kIndexBits | index;
    handle = reinterpret_cast<HMIDIOUT>(entry.handle);
    return MMSYSERR_NOERROR;
}

MMRESULT OutputRegistry::close(HMIDIOUT handle) {
    const std::lock_guard guard(m_changes);
    Entry* entry = find(handle);
    if (entry == nullptr) {
        return MMSYSERR_INVALHANDLE;
    }
    closeEntry(*entry);
    // What the machine has may have changed by the next start.
    m_listed = m_chosen || m_openCount > 0;
    return MMSYSERR_NOERROR;
}

OutputRegistry::Use OutputRegistry::use(HMIDIOUT handle) {
    Use use;
    use.m_lock = std::shared_lock(m_handles);
    if (const Entry* entry = find(handle)) {
        use.m_output = entry->output.get();
        use.m_index = static_cast<UINT>(entry - m_entries.data());
    } else {
        use.m_lock.unlock();
    }
    return use;
}

// Once the handle is gone nobody sends any more, and the device may take its time to close.
void OutputRegistry::closeEntry(Entry& entry) {
    {
        const std::lock_guard handles(m_handles);
        entry.handle = 0;
    }
    entry.output->close();
    --m_openCount;
}

OutputRegistry::Entry* OutputRegistry::find(HMIDIOUT handle) {
    const auto value = reinterpret_cast<std::uintptr_t>(handle);
    const std::uintptr_t index = value & kIndexMask;
    if (value == 0 || index >= m_entries.size() || m_entries[index].handle != value) {
        return nullptr;
    }
    return &m_entries[index];
}
