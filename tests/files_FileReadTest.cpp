// Files are read whole, a large one by two threads, each reading half of
// it; only regular files are opened.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

#include "files/DrawingFile.h"
#include "files/FileRead.h"

namespace pavo::files::test {
namespace {

namespace fs = std::filesystem;

struct TemporaryFile {
    explicit TemporaryFile(const std::string& content)
        : path(fs::temp_directory_path() / ("pavo-file-read-" + std::to_string(::getpid()) + ".bin")) {
        std::ofstream(path, std::ios::binary).write(content.data(), static_cast<std::streamsize>(content.size()));
    }
    ~TemporaryFile() { fs::remove(path); }
    fs::path path;
};

std::string readWhole(const fs::path& path, bool& ok) {
    InputFile file(path);
    std::string text(file.size(), '\0');
    ok = file.isOpen() && file.readInto(text.data(), text.size());
    return text;
}

TEST(DrawingFileRead, SmallAndLargeFilesAreReadExactly) {
    for (std::size_t size : {std::size_t(0), std::size_t(1000), std::size_t(9) << 20}) {
        SCOPED_TRACE(size);
        std::string content(size, '\0');
        for (std::size_t i = 0; i < size; ++i)
            content[i] = static_cast<char>('a' + (i * 7919 + i / 4096) % 26); // no two halves alike
        TemporaryFile file(content);
        bool ok = false;
        EXPECT_EQ(readWhole(file.path, ok), content);
        EXPECT_TRUE(ok);
    }
}

TEST(DrawingFileRead, MissingAndShortFilesAreRefusedInTheSystemsWords) {
    EXPECT_EQ(InputFile("/nonexistent/pavo/file.pvd").problem(), "No such file or directory");
    TemporaryFile file(std::string(std::size_t(9) << 20, 'x'));
    InputFile opened(file.path);
    std::string buffer((std::size_t(9) << 20) + 10, '\0');
    EXPECT_FALSE(opened.readInto(buffer.data(), buffer.size())); // shorter than asked
    EXPECT_EQ(opened.problem(), "the file became shorter while it was read");
}

// A FIFO without a writer would block an open for reading for ever; a
// device or a folder is no drawing either.
TEST(DrawingFileRead, FoldersFifosAndDevicesAreRefusedAtOnce) {
    const fs::path fifo = fs::temp_directory_path() / ("pavo-fifo-" + std::to_string(::getpid()));
    ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
    const std::pair<fs::path, const char*> cases[] = {{fs::temp_directory_path(), "Is a directory"},
                                                      {fifo, "is a FIFO, not a regular file"},
                                                      {"/dev/zero", "is a device, not a regular file"}};
    for (const auto& [path, problem] : cases) {
        InputFile file(path);
        EXPECT_FALSE(file.isOpen()) << path;
        EXPECT_EQ(file.problem(), problem);
        std::string reason;
        EXPECT_FALSE(readFileText(path, reason));
        EXPECT_EQ(reason, problem);
    }
    LoadError error;
    EXPECT_FALSE(readDrawingFile(fifo.string(), error));
    EXPECT_EQ(error.message(), fifo.string() + ": is a FIFO, not a regular file");
    fs::remove(fifo);
}

} // namespace
} // namespace pavo::files::test
