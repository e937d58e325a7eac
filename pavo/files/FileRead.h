// Every file pavo reads is opened here, and only a regular file is: a
// folder, a FIFO or a device is refused at once, never waited on, and a
// problem is told in the system's words ("No such file or directory").
// A large file is read with two threads at once, each filling (and taking
// the page faults of) its half of the buffer.
#pragma once

#include <cstddef>
#include <filesystem>
#include <istream>
#include <memory>
#include <optional>
#include <string>
#include <sys/stat.h>

namespace pavo::files {

class InputFile {
public:
    explicit InputFile(const std::filesystem::path& path);
    ~InputFile();
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;

    bool isOpen() const { return m_fd >= 0; }
    // Why the file is not open, or why the last read failed.
    const std::string& problem() const { return m_problem; }
    // The file's status when it was opened.
    const struct stat& status() const { return m_status; }
    std::size_t size() const { return static_cast<std::size_t>(m_status.st_size); }

    // Reads the first `size` bytes into `out`; false (with a problem) when
    // the file cannot be read or has become shorter.
    bool readInto(char* out, std::size_t size);

private:
    int m_fd = -1;
    struct stat m_status {};
    std::string m_problem;
};

// Why `status` is not the status of a regular file ("Is a directory", "is
// a FIFO, not a regular file"); empty when it is one.
std::string notRegularReason(const struct stat& status);

// A script read line by line as it comes: a regular file, or a FIFO or a
// pipe another program writes (`--script <(make-script)`). Null, with the
// system's reason, for a folder or a file that cannot be opened.
std::unique_ptr<std::istream> openScript(const std::filesystem::path& path, std::string& problem);

// The whole content of the file at `path`; nullopt, with `problem`, when
// it cannot be read.
std::optional<std::string> readFileText(const std::filesystem::path& path, std::string& problem);

} // namespace pavo::files
