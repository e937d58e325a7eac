#include "files/FileRead.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>
#include <thread>
#include <unistd.h>

namespace pavo::files {

namespace {

// Below this a second thread costs more than it saves.
constexpr std::size_t kSplitSize = std::size_t(8) << 20;

class FileDescriptor {
public:
    explicit FileDescriptor(const std::string& path) : m_fd(::open(path.c_str(), O_RDONLY | O_CLOEXEC)) {}
    ~FileDescriptor() {
        if (m_fd >= 0) ::close(m_fd);
    }
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;
    int get() const { return m_fd; }

private:
    int m_fd;
};

bool readRange(int fd, char* out, std::size_t offset, std::size_t length) {
    while (length > 0) {
        const ssize_t n = ::pread(fd, out, length, static_cast<off_t>(offset));
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) return false; // an error, or the file is shorter than it was
        out += n;
        offset += static_cast<std::size_t>(n);
        length -= static_cast<std::size_t>(n);
    }
    return true;
}

} // namespace

bool fileSizeOf(const std::string& path, std::size_t& size) {
    FileDescriptor file(path);
    struct stat info {};
    if (file.get() < 0 || ::fstat(file.get(), &info) != 0 || !S_ISREG(info.st_mode)) return false;
    size = static_cast<std::size_t>(info.st_size);
    return true;
}

bool readFileInto(const std::string& path, char* out, std::size_t size) {
    FileDescriptor file(path);
    if (file.get() < 0) return false;
    if (size < kSplitSize || std::thread::hardware_concurrency() < 2) return readRange(file.get(), out, 0, size);
    const std::size_t half = size / 2;
    bool secondOk = false;
    std::thread second;
    try {
        second = std::thread([&] { secondOk = readRange(file.get(), out + half, half, size - half); });
    } catch (const std::system_error&) {
        return readRange(file.get(), out, 0, size); // no thread to be had
    }
    const bool firstOk = readRange(file.get(), out, 0, half);
    second.join();
    return firstOk && secondOk;
}

} // namespace pavo::files
