// Every file pavo writes is saved here, safely: the new content goes to a
// temporary file next to the target, is synced, and is renamed over the
// target, whose previous content is kept as TARGET.bak. On any failure the
// old file is left as it was and `error` says why, in the system's words.
//
// - Through a symbolic link the file it leads to is written; the link stays.
// - A file with other hard links is rewritten in place, after its old
//   content went to the backup and room for the new content was made, so
//   that every name of it shows the new content.
// - A new file gets the permissions the umask allows; a replaced file keeps
//   its own (and its owner where the system allows); the backup keeps the
//   old file's.
// - The file size limit makes a save fail with a message, not a signal.
// - Temporary files that an interrupted save left next to the target are
//   removed; the one being written is locked, so that another session's
//   save in progress is left alone.
#pragma once

#include <ctime>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <sys/stat.h>

namespace pavo::files {

// What tells whether a file was replaced or changed since it was read or
// written: its identity (device and inode), size and modification time.
struct FileStamp {
    dev_t device = 0;
    ino_t inode = 0;
    off_t size = 0;
    timespec modified{};
    bool operator==(const FileStamp& o) const {
        return device == o.device && inode == o.inode && size == o.size && modified.tv_sec == o.modified.tv_sec &&
               modified.tv_nsec == o.modified.tv_nsec;
    }
};
FileStamp stampOf(const struct stat& status);
// The stamp of the file at `path` (through links); nullopt when there is none.
std::optional<FileStamp> stampOf(const std::filesystem::path& path);

// The file that writing `path` changes: where its symbolic links lead. Empty,
// with `error`, when they loop.
std::filesystem::path linkTarget(const std::filesystem::path& path, std::string& error);

enum class Backup { Keep, None };

// Saves `content` as `path`. `written` gets the stamp of the file saved.
bool replaceFileAtomically(const std::filesystem::path& path, std::string_view content, std::string& error,
                           Backup backup = Backup::Keep, FileStamp* written = nullptr);

} // namespace pavo::files
