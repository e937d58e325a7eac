// How a save treats what is on disk: links, permissions, the size limit and
// what interrupted saves left behind.
#include <csignal>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include "RunPavo.h"
#include "files/AtomicFile.h"
#include "files_TestSupport.h"

namespace pavo::files::test {
namespace {

namespace fs = std::filesystem;

class Saving : public ::testing::Test {
protected:
    void SetUp() override { root = dir.path(""); }
    std::string file(const std::string& name) const { return dir.path(name); }
    std::string read(const std::string& name) const { return dir.read(name); }
    static mode_t permissions(const std::string& path) {
        struct stat status {};
        EXPECT_EQ(::stat(path.c_str(), &status), 0) << path;
        return status.st_mode & 07777;
    }
    static bool save(const std::string& path, const std::string& content, std::string* problem = nullptr) {
        std::string error;
        const bool ok = replaceFileAtomically(path, content, error);
        if (problem) *problem = error;
        EXPECT_TRUE(ok || problem) << error;
        return ok;
    }
    pavotest::TempFolder dir;
    std::string root;
};

TEST_F(Saving, ThroughASymbolicLinkTheFileItLeadsToIsWritten) {
    dir.write("real.pvd", "old");
    ASSERT_EQ(::symlink("real.pvd", file("link.pvd").c_str()), 0);
    ASSERT_EQ(::symlink(file("link.pvd").c_str(), file("link2.pvd").c_str()), 0); // a chain
    ASSERT_TRUE(save(file("link2.pvd"), "new"));
    EXPECT_TRUE(fs::is_symlink(file("link.pvd")));
    EXPECT_TRUE(fs::is_symlink(file("link2.pvd")));
    EXPECT_EQ(read("real.pvd"), "new");
    EXPECT_EQ(read("real.pvd.bak"), "old");
    EXPECT_FALSE(fs::exists(file("link2.pvd.bak")));

    // A link to nothing yet: the save makes the file it names.
    ASSERT_EQ(::symlink("later.pvd", file("dangling.pvd").c_str()), 0);
    ASSERT_TRUE(save(file("dangling.pvd"), "made"));
    EXPECT_EQ(read("later.pvd"), "made");
    EXPECT_TRUE(fs::is_symlink(file("dangling.pvd")));

    // Links that go round are refused.
    ASSERT_EQ(::symlink("round2", file("round1").c_str()), 0);
    ASSERT_EQ(::symlink("round1", file("round2").c_str()), 0);
    std::string problem;
    EXPECT_FALSE(save(file("round1"), "x", &problem));
    EXPECT_NE(problem.find("Too many levels of symbolic links"), std::string::npos) << problem;
}

TEST_F(Saving, AHardLinkedFileIsRewrittenSoThatEveryNameSeesIt) {
    dir.write("plan.pvd", "old content");
    ASSERT_EQ(::link(file("plan.pvd").c_str(), file("other-name.pvd").c_str()), 0);
    struct stat before {};
    ASSERT_EQ(::stat(file("plan.pvd").c_str(), &before), 0);
    FileStamp written;
    std::string error;
    ASSERT_TRUE(replaceFileAtomically(file("plan.pvd"), "new", error, Backup::Keep, &written)) << error;
    EXPECT_EQ(read("other-name.pvd"), "new");
    EXPECT_EQ(read("plan.pvd"), "new");
    EXPECT_EQ(read("plan.pvd.bak"), "old content");
    struct stat after {};
    ASSERT_EQ(::stat(file("plan.pvd").c_str(), &after), 0);
    EXPECT_EQ(after.st_ino, before.st_ino);
    EXPECT_EQ(after.st_nlink, 2u);
    EXPECT_TRUE(written == stampOf(fs::path(file("plan.pvd"))).value());
}

TEST_F(Saving, PermissionsFollowTheUmaskTheOldFileAndItsBackup) {
    const mode_t previous = ::umask(027);
    ASSERT_TRUE(save(file("new.pvd"), "first"));
    EXPECT_EQ(permissions(file("new.pvd")), 0640u);

    dir.write("shared.pvd", "old");
    ASSERT_EQ(::chmod(file("shared.pvd").c_str(), 0664), 0);
    ASSERT_TRUE(save(file("shared.pvd"), "new"));
    EXPECT_EQ(permissions(file("shared.pvd")), 0664u); // its own, not the umask's
    ASSERT_EQ(::chmod(file("shared.pvd").c_str(), 0604), 0);
    ASSERT_TRUE(save(file("shared.pvd"), "newer"));
    EXPECT_EQ(permissions(file("shared.pvd")), 0604u);
    EXPECT_EQ(permissions(file("shared.pvd.bak")), 0604u); // the old file's
    EXPECT_EQ(read("shared.pvd.bak"), "new");
    ::umask(previous);
}

// pavo does not ignore SIGXFSZ for the test: the save must, or the test
// process dies. The limit holds for every user, root included.
TEST_F(Saving, TheFileSizeLimitFailsTheSaveWithAMessage) {
    dir.write("plan.pvd", "old content");
    std::signal(SIGXFSZ, SIG_DFL);
    rlimit before{};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
    rlimit small = before;
    small.rlim_cur = 100;
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
    std::string problem;
    const bool saved = save(file("plan.pvd"), std::string(1000, 'x'), &problem);
    ::setrlimit(RLIMIT_FSIZE, &before);
    EXPECT_FALSE(saved);
    EXPECT_EQ(problem, "cannot write " + file("plan.pvd") + ": File too large");
    EXPECT_EQ(read("plan.pvd"), "old content");
    for (const auto& entry : fs::directory_iterator(root))
        EXPECT_EQ(entry.path().filename().string().find(".tmp"), std::string::npos) << entry.path();
}

TEST_F(Saving, TemporaryFilesOfInterruptedSavesAreRemoved) {
    for (const char* name :
         {"plan.pvd.Ab12Cd.tmp", "plan.pvd.Zz99Yy.tmp", "plan.pvd.notes.tmp", "other.pvd.Ab12Cd.tmp"})
        dir.write(name, "left over");
    // Another session's save in progress holds a lock on its file.
    const int inProgress = ::open(file("plan.pvd.Zz99Yy.tmp").c_str(), O_RDONLY | O_CLOEXEC);
    ASSERT_EQ(::flock(inProgress, LOCK_EX), 0);
    ASSERT_TRUE(save(file("plan.pvd"), "content"));
    EXPECT_FALSE(fs::exists(file("plan.pvd.Ab12Cd.tmp")));
    EXPECT_TRUE(fs::exists(file("plan.pvd.Zz99Yy.tmp")));
    EXPECT_TRUE(fs::exists(file("plan.pvd.notes.tmp")));
    EXPECT_TRUE(fs::exists(file("other.pvd.Ab12Cd.tmp")));
    ::close(inProgress);
}

TEST_F(Saving, FoldersAndFifosAreNotOverwritten) {
    ASSERT_EQ(::mkdir(file("folder.pvd").c_str(), 0700), 0);
    ASSERT_EQ(::mkfifo(file("pipe.pvd").c_str(), 0600), 0);
    std::string problem;
    EXPECT_FALSE(save(file("folder.pvd"), "x", &problem));
    EXPECT_EQ(problem, "cannot write " + file("folder.pvd") + ": Is a directory");
    EXPECT_FALSE(save(file("pipe.pvd"), "x", &problem));
    EXPECT_EQ(problem, "cannot write " + file("pipe.pvd") + ": is a FIFO, not a regular file");
}

TEST_F(Saving, TheStampTellsAnotherWriterApart) {
    FileStamp mine;
    std::string error;
    ASSERT_TRUE(replaceFileAtomically(file("plan.pvd"), "mine", error, Backup::Keep, &mine)) << error;
    EXPECT_TRUE(stampOf(fs::path(file("plan.pvd"))).value() == mine);
    ASSERT_TRUE(save(file("plan.pvd"), "theirs"));
    EXPECT_FALSE(stampOf(fs::path(file("plan.pvd"))).value() == mine);
    EXPECT_FALSE(stampOf(fs::path(file("gone.pvd"))));
}

} // namespace
} // namespace pavo::files::test
