#include "files/FileRead.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <system_error>
#include <thread>
#include <unistd.h>

namespace pavo::files {

namespace {

// Below this a second thread costs more than it saves.
constexpr std::size_t kSplitSize = std::size_t(8) << 20;

bool readRange(int fd, char* out, std::size_t offset, std::size_t length, int& error) {
    while (length > 0) {
        const ssize_t n = ::pread(fd, out, length, static_cast<off_t>(offset));
        if (n < 0 && errno == EINTR) continue;
        if (n < 0) error = errno;
        if (n <= 0) return false; // an error, or the file is shorter than it was
        out += n;
        offset += static_cast<std::size_t>(n);
        length -= static_cast<std::size_t>(n);
    }
    return true;
}

} // namespace

std::string notRegularReason(const struct stat& status) {
    if (S_ISREG(status.st_mode)) return {};
    if (S_ISDIR(status.st_mode)) return std::strerror(EISDIR);
    if (S_ISFIFO(status.st_mode)) return "is a FIFO, not a regular file";
    if (S_ISSOCK(status.st_mode)) return "is a socket, not a regular file";
    if (S_ISCHR(status.st_mode) || S_ISBLK(status.st_mode)) return "is a device, not a regular file";
    return "is not a regular file";
}

InputFile::InputFile(const std::filesystem::path& path) {
    // Looked at before it is opened: opening a FIFO waits for a writer, and
    // opening some devices does things.
    struct stat before {};
    if (::stat(path.c_str(), &before) != 0) {
        m_problem = std::strerror(errno);
        return;
    }
    if (m_problem = notRegularReason(before); !m_problem.empty()) return;
    // Not waiting even if the file was replaced by a FIFO since.
    m_fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (m_fd < 0) {
        m_problem = std::strerror(errno);
        return;
    }
    if (::fstat(m_fd, &m_status) != 0) {
        m_problem = std::strerror(errno);
    } else {
        m_problem = notRegularReason(m_status);
    }
    if (!m_problem.empty()) {
        ::close(m_fd);
        m_fd = -1;
        return;
    }
    ::fcntl(m_fd, F_SETFL, ::fcntl(m_fd, F_GETFL) & ~O_NONBLOCK);
}

InputFile::~InputFile() {
    if (m_fd >= 0) ::close(m_fd);
}

bool InputFile::readInto(char* out, std::size_t size) {
    if (m_fd < 0) return false;
    int firstError = 0, secondError = 0;
    bool ok = false;
    if (size < kSplitSize || std::thread::hardware_concurrency() < 2) {
        ok = readRange(m_fd, out, 0, size, firstError);
    } else {
        const std::size_t half = size / 2;
        bool secondOk = false;
        std::thread second;
        try {
            second = std::thread([&] { secondOk = readRange(m_fd, out + half, half, size - half, secondError); });
        } catch (const std::system_error&) {
            secondOk = readRange(m_fd, out + half, half, size - half, secondError); // no thread to be had
        }
        const bool firstOk = readRange(m_fd, out, 0, half, firstError);
        if (second.joinable()) second.join();
        ok = firstOk && secondOk;
    }
    if (!ok) {
        const int error = firstError ? firstError : secondError;
        m_problem = error ? std::strerror(error) : "the file became shorter while it was read";
    }
    return ok;
}

std::unique_ptr<std::istream> openScript(const std::filesystem::path& path, std::string& problem) {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0) {
        problem = std::strerror(errno);
        return nullptr;
    }
    if (S_ISDIR(status.st_mode)) {
        problem = std::strerror(EISDIR);
        return nullptr;
    }
    auto stream = std::make_unique<std::ifstream>(path, std::ios::binary);
    if (!*stream) {
        problem = std::strerror(errno ? errno : EACCES);
        return nullptr;
    }
    return stream;
}

std::optional<std::string> readFileText(const std::filesystem::path& path, std::string& problem) {
    InputFile file(path);
    std::string text(file.isOpen() ? file.size() : 0, '\0');
    if (!file.isOpen() || !file.readInto(text.data(), text.size())) {
        problem = file.problem();
        return std::nullopt;
    }
    return text;
}

} // namespace pavo::files
