// Drawing files are read whole; a large one by two threads, each reading
// half of it.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <unistd.h>

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
    std::size_t size = 0;
    ok = fileSizeOf(path.string(), size);
    std::string text(size, '\0');
    ok = ok && readFileInto(path.string(), text.data(), size);
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

TEST(DrawingFileRead, MissingShortAndNonRegularFilesAreRefused) {
    std::size_t size = 0;
    EXPECT_FALSE(fileSizeOf("/nonexistent/pavo/file.pvd", size));
    EXPECT_FALSE(fileSizeOf(fs::temp_directory_path().string(), size)); // a folder
    TemporaryFile file(std::string(std::size_t(9) << 20, 'x'));
    std::string buffer((std::size_t(9) << 20) + 10, '\0');
    EXPECT_FALSE(readFileInto(file.path.string(), buffer.data(), buffer.size())); // shorter than asked
    EXPECT_FALSE(readFileInto("/nonexistent/pavo/file.pvd", buffer.data(), 1));
}

} // namespace
} // namespace pavo::files::test
