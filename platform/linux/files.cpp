// Files that are open for reading.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "platform/linux/faults.h"
#include "platform/linux/handle_table.h"
#include "platform/linux/system_names.h"

namespace {

class File {
public:
    explicit File(int descriptor) : m_descriptor(descriptor) {}
    ~File() {
        ::close(m_descriptor);
    }
    File(const File&) = delete;
    File& operator=(const File&) = delete;

    int descriptor() const {
        return m_descriptor;
    }

private:
    int m_descriptor;
};

HandleTable<File, HANDLE>& files() {
    static auto& instance = *new HandleTable<File, HANDLE>;
    return instance;
}

bool isRegular(int descriptor) {
    struct stat status = {};
    return ::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
}

// Not to block on a pipe without a writer; regular files take no notice.
constexpr int kOpenFlags = O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK;

} // namespace

HANDLE CreateFileA(const char* name, DWORD access, DWORD, void*, DWORD disposition, DWORD, HANDLE) {
    const bool reading = access == GENERIC_READ && disposition == OPEN_EXISTING;
    if (faults::fails("CreateFileA") || name == nullptr || !reading) {
        return INVALID_HANDLE_VALUE;
    }
    const int descriptor = ::open(name, kOpenFlags);
    if (descriptor < 0) {
        return INVALID_HANDLE_VALUE;
    }
    auto file = std::make_shared<File>(descriptor);
    return isRegular(descriptor) ? files().add(std::move(file)) : INVALID_HANDLE_VALUE;
}

DWORD GetFileSize(HANDLE handle, DWORD* high) {
    const std::shared_ptr<File> file = files().find(handle);
    struct stat status = {};
    if (faults::fails("GetFileSize") || !file || ::fstat(file->descriptor(), &status) != 0 ||
        status.st_size >= std::int64_t{INVALID_FILE_SIZE}) {
        return INVALID_FILE_SIZE;
    }
    if (high != nullptr) {
        *high = 0;
    }
    return static_cast<DWORD>(status.st_size);
}

BOOL ReadFile(HANDLE handle, void* buffer, DWORD bytes, DWORD* bytesRead, void*) {
    if (bytesRead != nullptr) {
        *bytesRead = 0;
    }
    const std::shared_ptr<File> file = files().find(handle);
    if (faults::fails("ReadFile") || !file || buffer == nullptr) {
        return 0;
    }
    DWORD done = 0;
    while (done < bytes) {
        const ssize_t part =
            ::read(file->descriptor(), static_cast<char*>(buffer) + done, bytes - done);
        if (part < 0 && errno == EINTR) {
            continue;
        }
        if (part < 0) {
            return 0;
        }
        if (part == 0) {
            break;
        }
        done += static_cast<DWORD>(part);
    }
    if (bytesRead != nullptr) {
        *bytesRead = done;
    }
    return 1;
}

BOOL CloseHandle(HANDLE handle) {
    return !faults::fails("CloseHandle") && files().remove(handle) ? 1 : 0;
}
