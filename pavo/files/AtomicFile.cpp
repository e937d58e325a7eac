#include "files/AtomicFile.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "files/DrawingFile.h"

namespace pavo::files {
namespace {

std::string folderOf(const std::string& path) {
    const auto slash = path.rfind('/');
    if (slash == std::string::npos) return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

std::string describe(const std::string& what, const std::string& path) {
    return what + " " + path + ": " + std::strerror(errno);
}

bool writeAll(int fd, std::string_view content) {
    while (!content.empty()) {
        const ssize_t n = ::write(fd, content.data(), content.size());
        if (n < 0) {
            if (errno == EINTR) continue;
            return false;
        }
        content.remove_prefix(static_cast<std::size_t>(n));
    }
    return true;
}

} // namespace

bool replaceFileAtomically(const std::string& path, std::string_view content, std::string& error) {
    std::string temp = path + ".XXXXXX.tmp";
    const int fd = ::mkstemps(temp.data(), 4);
    if (fd < 0) {
        error = describe("cannot create a temporary file next to", path);
        return false;
    }
    struct stat old {};
    const bool hadOld = ::stat(path.c_str(), &old) == 0;
    // Keep the permissions of the file being replaced.
    if (hadOld) ::fchmod(fd, old.st_mode & 07777);
    bool ok = writeAll(fd, content) && ::fsync(fd) == 0;
    if (!ok) error = describe("cannot write", temp);
    if (::close(fd) != 0 && ok) {
        ok = false;
        error = describe("cannot write", temp);
    }
    if (ok && hadOld) {
        // A hard link keeps the old file in place until the rename below.
        const std::string backup = path + ".bak";
        ::unlink(backup.c_str());
        if (::link(path.c_str(), backup.c_str()) != 0) {
            ok = false;
            error = describe("cannot make the backup", backup);
        }
    }
    if (ok && ::rename(temp.c_str(), path.c_str()) != 0) {
        ok = false;
        error = describe("cannot replace", path);
    }
    if (!ok) {
        ::unlink(temp.c_str());
        return false;
    }
    // Make the rename itself durable.
    const int dir = ::open(folderOf(path).c_str(), O_RDONLY | O_DIRECTORY);
    if (dir >= 0) {
        ::fsync(dir);
        ::close(dir);
    }
    return true;
}

bool writeDrawingFile(const OxDbDatabase& db, const std::string& path, std::string& error) {
    return replaceFileAtomically(path, writeDrawing(db), error);
}

} // namespace pavo::files
