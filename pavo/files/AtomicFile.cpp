#include "files/AtomicFile.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <random>
#include <sys/file.h>
#include <unistd.h>

#include "base/PathText.h"
#include "base/Utf8.h"
#include "files/DrawingFile.h"
#include "files/FileRead.h"

namespace fs = std::filesystem;

namespace pavo::files {
namespace {

constexpr std::string_view kTemporarySuffix = ".tmp";
constexpr std::size_t kRandomLength = 6;

std::string shown(const fs::path& path) { return toUtf8(pathText(path)); }

// "cannot write PATH: REASON" from errno.
std::string failure(const char* what, const fs::path& path, int error = errno) {
    return std::string(what) + " " + shown(path) + ": " + std::strerror(error);
}

// Past the file size limit, write() should fail with EFBIG rather than the
// process be killed (set at every save: whoever set it otherwise since).
void ignoreFileSizeSignal() { std::signal(SIGXFSZ, SIG_IGN); }

class Descriptor {
public:
    explicit Descriptor(int fd = -1) : m_fd(fd) {}
    ~Descriptor() { reset(); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    int get() const { return m_fd; }
    void reset(int fd = -1) {
        if (m_fd >= 0) ::close(m_fd);
        m_fd = fd;
    }
    // Closes, reporting a failure (a write that only fails at close).
    bool close() {
        const int fd = m_fd;
        m_fd = -1;
        return fd < 0 || ::close(fd) == 0;
    }

private:
    int m_fd;
};

bool writeAll(int fd, std::string_view content, off_t offset) {
    while (!content.empty()) {
        const ssize_t n = ::pwrite(fd, content.data(), content.size(), offset);
        if (n < 0) {
            if (errno == EINTR) continue;
            return false;
        }
        content.remove_prefix(static_cast<std::size_t>(n));
        offset += n;
    }
    return true;
}

std::string randomLetters() {
    static std::mt19937_64 generator = [] {
        std::seed_seq seed{static_cast<std::uint64_t>(::getpid()), static_cast<std::uint64_t>(std::time(nullptr)),
                           static_cast<std::uint64_t>(reinterpret_cast<std::uintptr_t>(&generator))};
        return std::mt19937_64(seed);
    }();
    static constexpr char kLetters[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789";
    std::string text(kRandomLength, 'x');
    for (char& c : text)
        c = kLetters[generator() % (sizeof kLetters - 1)];
    return text;
}

// TARGET.XXXXXX.tmp: the temporary files of saves of `target`.
bool isTemporaryOf(std::string_view entry, std::string_view targetName) {
    return entry.size() == targetName.size() + 1 + kRandomLength + kTemporarySuffix.size() &&
           entry.starts_with(targetName) && entry[targetName.size()] == '.' && entry.ends_with(kTemporarySuffix);
}

// Removes the temporary files that interrupted saves of `target` left. A
// save in progress holds a lock on its file and keeps it.
void removeStaleTemporaries(const fs::path& target) {
    const fs::path folder = target.has_parent_path() ? target.parent_path() : fs::path(".");
    const std::string name = target.filename().native();
    DIR* dir = ::opendir(folder.c_str());
    if (!dir) return;
    while (const dirent* entry = ::readdir(dir)) {
        if (!isTemporaryOf(entry->d_name, name)) continue;
        const fs::path stale = folder / entry->d_name;
        Descriptor fd(::open(stale.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY));
        struct stat status {};
        if (fd.get() < 0 || ::fstat(fd.get(), &status) != 0 || !S_ISREG(status.st_mode)) continue;
        if (::flock(fd.get(), LOCK_EX | LOCK_NB) == 0) ::unlink(stale.c_str());
    }
    ::closedir(dir);
}

// Gives the file `fd` the permissions and, where allowed, the owner of `old`.
void takeModeOf(int fd, const struct stat& old) {
    struct stat now {};
    if (::fstat(fd, &now) == 0 && (now.st_uid != old.st_uid || now.st_gid != old.st_gid))
        (void)!::fchown(fd, old.st_uid, old.st_gid); // only root may give a file away
    ::fchmod(fd, old.st_mode & 07777);
}

// A new temporary file next to `target` holding `content`, synced and
// locked. Its permissions are those of `like`, else what the umask allows.
class Temporary {
public:
    bool write(const fs::path& target, std::string_view content, const struct stat* like, std::string& error) {
        for (int attempt = 0; attempt < 100 && m_fd.get() < 0; ++attempt) {
            m_path = target;
            m_path += "." + randomLetters() + std::string(kTemporarySuffix);
            // 0666 less the umask, as for any new file.
            m_fd.reset(::open(m_path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, 0666));
            if (m_fd.get() < 0 && errno != EEXIST) break;
        }
        if (m_fd.get() < 0) {
            error = failure("cannot write a temporary file next to", target);
            m_path.clear();
            return false;
        }
        ::flock(m_fd.get(), LOCK_EX);
        if (like) takeModeOf(m_fd.get(), *like);
        if (!writeAll(m_fd.get(), content, 0) || ::fsync(m_fd.get()) != 0) {
            error = failure("cannot write", target);
            return false;
        }
        return true;
    }
    // Renames the file to `target`; on success it is no longer temporary.
    bool moveTo(const fs::path& target, std::string& error, FileStamp* stamp) {
        struct stat status {};
        if (stamp && ::fstat(m_fd.get(), &status) == 0) *stamp = stampOf(status);
        if (::rename(m_path.c_str(), target.c_str()) != 0) {
            error = failure("cannot replace", target);
            return false;
        }
        m_path.clear();
        if (!m_fd.close()) {
            error = failure("cannot write", target);
            return false;
        }
        return true;
    }
    ~Temporary() {
        if (!m_path.empty()) ::unlink(m_path.c_str());
    }

private:
    fs::path m_path;
    Descriptor m_fd;
};

// Makes the renames in `target`'s folder durable.
void syncFolderOf(const fs::path& target) {
    const fs::path folder = target.has_parent_path() ? target.parent_path() : fs::path(".");
    Descriptor dir(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (dir.get() >= 0) ::fsync(dir.get());
}

fs::path backupOf(const fs::path& target) {
    fs::path backup = target;
    backup += ".bak";
    return backup;
}

// A copy of the old file's content as the backup, with its permissions.
bool copyToBackup(const fs::path& target, const struct stat& old, std::string& error) {
    std::string reason;
    const std::optional<std::string> content = readFileText(target, reason);
    if (!content) {
        error = "cannot read " + shown(target) + " for its backup: " + reason;
        return false;
    }
    Temporary copy;
    return copy.write(backupOf(target), *content, &old, error) && copy.moveTo(backupOf(target), error, nullptr);
}

// The old file stays reachable as the backup: a second name for it where
// the folder allows hard links, else a copy.
bool keepBackup(const fs::path& target, const struct stat& old, std::string& error) {
    const fs::path backup = backupOf(target);
    ::unlink(backup.c_str());
    if (::link(target.c_str(), backup.c_str()) == 0) return true;
    if (errno != EPERM && errno != EMLINK && errno != EOPNOTSUPP && errno != EXDEV) {
        error = failure("cannot make the backup", backup);
        return false;
    }
    return copyToBackup(target, old, error);
}

// Rewrites a file with other hard links in place, so that every one of its
// names leads to the new content.
bool rewriteInPlace(const fs::path& target, std::string_view content, const struct stat& old, Backup backup,
                    std::string& error, FileStamp* written) {
    if (backup == Backup::Keep && !copyToBackup(target, old, error)) return false;
    Descriptor fd(::open(target.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY));
    if (fd.get() < 0) {
        error = failure("cannot write", target);
        return false;
    }
    // Room first: a full disk or the size limit fails here, before the old
    // content is touched.
    if (const int e = ::posix_fallocate(fd.get(), 0, static_cast<off_t>(content.size()));
        e != 0 && e != EOPNOTSUPP && e != EINVAL) {
        error = failure("cannot write", target, e);
        return false;
    }
    struct stat status {};
    if (!writeAll(fd.get(), content, 0) || ::ftruncate(fd.get(), static_cast<off_t>(content.size())) != 0 ||
        ::fsync(fd.get()) != 0 || ::fstat(fd.get(), &status) != 0 || !fd.close()) {
        error = failure("cannot write", target);
        return false;
    }
    if (written) *written = stampOf(status);
    return true;
}

} // namespace

FileStamp stampOf(const struct stat& status) {
    return FileStamp{status.st_dev, status.st_ino, status.st_size, status.st_mtim};
}

std::optional<FileStamp> stampOf(const fs::path& path) {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0) return std::nullopt;
    return stampOf(status);
}

fs::path linkTarget(const fs::path& path, std::string& error) {
    fs::path current = path;
    for (int hops = 0; hops < 40; ++hops) {
        struct stat status {};
        if (::lstat(current.c_str(), &status) != 0 || !S_ISLNK(status.st_mode)) return current;
        std::string text(static_cast<std::size_t>(status.st_size > 0 ? status.st_size : 255) + 1, '\0');
        const ssize_t n = ::readlink(current.c_str(), text.data(), text.size());
        if (n < 0) return current; // the write reports the problem
        text.resize(static_cast<std::size_t>(n));
        const fs::path next(text);
        current = next.is_absolute() || !current.has_parent_path() ? next : current.parent_path() / next;
    }
    error = failure("cannot write", path, ELOOP);
    return {};
}

bool replaceFileAtomically(const fs::path& path, std::string_view content, std::string& error, Backup backup,
                           FileStamp* written) {
    ignoreFileSizeSignal();
    const fs::path target = linkTarget(path, error);
    if (target.empty()) return false;
    struct stat old {};
    const bool hadOld = ::stat(target.c_str(), &old) == 0;
    if (hadOld && !S_ISREG(old.st_mode)) {
        error = "cannot write " + shown(path) + ": " + notRegularReason(old);
        return false;
    }
    removeStaleTemporaries(target);
    if (hadOld && old.st_nlink > 1) return rewriteInPlace(target, content, old, backup, error, written);
    Temporary temporary;
    if (!temporary.write(target, content, hadOld ? &old : nullptr, error)) return false;
    if (hadOld && backup == Backup::Keep && !keepBackup(target, old, error)) return false;
    if (!temporary.moveTo(target, error, written)) return false;
    syncFolderOf(target);
    return true;
}

} // namespace pavo::files
