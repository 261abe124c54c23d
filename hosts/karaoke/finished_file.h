// A file that appears under its name only when it is finished.
#pragma once

#include <string>

namespace karaoke {

/// Written under a temporary name in the same folder; whatever had the name stays until finish().
class FinishedFile {
public:
    /// @throws host::HostError  when no file can be made there
    explicit FinishedFile(const std::string& path);
    /// Removes what was not finished.
    ~FinishedFile();
    FinishedFile(const FinishedFile&) = delete;
    FinishedFile& operator=(const FinishedFile&) = delete;

    /// The open file, for reading and writing. It belongs to this.
    int descriptor() const {
        return m_descriptor;
    }
    /// @throws host::HostError  when the file takes no more
    void write(const std::string& text) const;
    /// Gives the file its name.
    /// @throws host::HostError  when it cannot be stored
    void finish();
    /// Removes the temporary file at once, from any thread.
    void abandon() const noexcept;

private:
    [[noreturn]] void fail() const;

    std::string m_path;
    std::string m_temporary;
    int m_descriptor;
    bool m_finished = false;
};

} // namespace karaoke
