#include "system/AtomicFile.h"

#include "backends/system/TempFolder.h"
#include "system/FileDescriptor.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <string_view>

namespace SystemBackend {

namespace {

namespace fs = std::filesystem;
using TestSupport::readFile;

bool write(AtomicFile& file, std::string_view text) {
    return file.write(std::as_bytes(std::span(text)));
}

bool writeWhole(const std::string& path, std::string_view text) {
    AtomicFile file(path);
    return write(file, text) && file.commit();
}

unsigned permissionsOf(const std::string& path) {
    return static_cast<unsigned>(fs::symlink_status(path).permissions());
}

void setPermissions(const std::string& path, unsigned permissions) {
    fs::permissions(path, static_cast<fs::perms>(permissions));
}

ino_t inodeOf(const std::string& path) {
    struct stat status {};
    EXPECT_EQ(::stat(path.c_str(), &status), 0);
    return status.st_ino;
}

/// Sets the process's umask for a scope.
class Umask {
public:
    explicit Umask(mode_t mask)
        : before(::umask(mask)) {}
    ~Umask() { ::umask(before); }
    Umask(const Umask&) = delete;
    Umask& operator=(const Umask&) = delete;

private:
    mode_t before;
};

using Names = std::set<std::string>;

TEST(AtomicFile, HoldsAllThatWasWritten) {
    const TempFolder temp;
    AtomicFile file(temp / "a.png");
    EXPECT_TRUE(write(file, "first "));
    EXPECT_TRUE(write(file, ""));
    EXPECT_TRUE(write(file, std::string_view("sec\0nd", 6)));
    EXPECT_TRUE(file.commit());
    EXPECT_EQ(readFile(temp / "a.png"), std::string("first sec\0nd", 12));
}

TEST(AtomicFile, HoldsMoreThanAPipeOrAPageCanTakeAtOnce) {
    const TempFolder temp;
    std::string text(5'000'001, 'x');
    text.back() = 'z';
    EXPECT_TRUE(writeWhole(temp / "a.png", text));
    EXPECT_EQ(readFile(temp / "a.png"), text);
}

TEST(AtomicFile, IsWrittenAtAnyPlaceAndReadBack) {
    const TempFolder temp;
    AtomicFile file(temp / "a.png");
    const std::string_view rear = "rear";
    const std::string_view front = "front";
    EXPECT_TRUE(file.writeAt(6, std::as_bytes(std::span(rear))));
    EXPECT_TRUE(file.writeAt(0, std::as_bytes(std::span(front))));
    std::array<char, 4> found{};
    EXPECT_TRUE(file.readAt(6, std::as_writable_bytes(std::span(found))));
    EXPECT_EQ(std::string_view(found.data(), found.size()), rear);
    EXPECT_FALSE(file.readAt(7, std::as_writable_bytes(std::span(found)))) << "beyond the end";
    EXPECT_TRUE(file.commit());
    EXPECT_EQ(readFile(temp / "a.png"), std::string("front\0rear", 10));
}

TEST(AtomicFile, ThatIsAPipeHasNoPlaces) {
    const TempFolder temp;
    const std::string pipe = temp / "pipe";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    const FileDescriptor reader(::open(pipe.c_str(), O_RDONLY | O_NONBLOCK));
    AtomicFile file(pipe);
    ASSERT_TRUE(file.good());
    EXPECT_FALSE(file.writeAt(0, std::as_bytes(std::span("text"))));
    EXPECT_EQ(file.error(), ESPIPE);
}

TEST(AtomicFile, ThatIsWrittenAtPlacesDoesNotOpenAPipe) {
    const TempFolder temp;
    const std::string pipe = temp / "pipe";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    AtomicFile file(pipe, AtomicFile::Writing::AtPlaces);
    EXPECT_EQ(file.error(), ESPIPE);
    EXPECT_FALSE(file.commit());
    EXPECT_TRUE(fs::is_fifo(pipe));
}

TEST(AtomicFile, MayBeEmpty) {
    const TempFolder temp;
    EXPECT_TRUE(writeWhole(temp / "a.png", ""));
    EXPECT_EQ(temp.names(), Names{"a.png"});
}

TEST(AtomicFile, DoesNotAppearBeforeTheCommit) {
    const TempFolder temp;
    AtomicFile file(temp / "a.png");
    write(file, "new");
    EXPECT_FALSE(temp.names().contains("a.png"));
    EXPECT_TRUE(file.commit());
    EXPECT_EQ(temp.names(), Names{"a.png"});
}

TEST(AtomicFile, LeavesNothingWithoutACommit) {
    const TempFolder temp;
    {
        AtomicFile file(temp / "a.png");
        ASSERT_TRUE(write(file, "new"));
    }
    EXPECT_EQ(temp.names(), Names{});
}

TEST(AtomicFile, LeavesTheOldContentUntilTheCommit) {
    const TempFolder temp;
    const std::string path = temp.file("a.png", "old and longer");
    {
        AtomicFile file(path);
        write(file, "new");
        EXPECT_EQ(readFile(path), "old and longer");
    }
    EXPECT_EQ(readFile(path), "old and longer");
    EXPECT_TRUE(writeWhole(path, "new"));
    EXPECT_EQ(readFile(path), "new");
    EXPECT_EQ(temp.names(), Names{"a.png"});
}

TEST(AtomicFile, LeavesTheOldFileToThoseWhoReadIt) {
    const TempFolder temp;
    std::ifstream reader(temp.file("a.png", "old"));
    ASSERT_TRUE(writeWhole(temp / "a.png", "new"));
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(reader), {}), "old");
}

TEST(AtomicFile, CommitsOnce) {
    const TempFolder temp;
    AtomicFile file(temp / "a.png");
    EXPECT_TRUE(file.commit());
    EXPECT_FALSE(file.commit());
    EXPECT_FALSE(write(file, "more"));
    EXPECT_EQ(file.error(), EBADF);
    EXPECT_EQ(readFile(temp / "a.png"), "");
}

TEST(AtomicFile, LeavesNothingUnderItsNameWhenTheProcessIsKilled) {
    const TempFolder temp;
    const std::string path = temp.file("old.png", "old");
    const pid_t child = ::fork();
    if (child == 0) {
        AtomicFile replacing(path);
        AtomicFile fresh(temp / "new.png");
        write(replacing, "half");
        write(fresh, "half");
        ::raise(SIGKILL);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFSIGNALED(status));
    EXPECT_EQ(readFile(path), "old");
    EXPECT_FALSE(temp.names().contains("new.png"));
    const FileDescriptor unnamed(::open(temp.path().c_str(), O_WRONLY | O_TMPFILE | O_CLOEXEC, 0600));
    const std::size_t strayFiles = unnamed.isOpen() ? 0 : 2; // two where a file needs a name from the start
    EXPECT_EQ(temp.names().size(), 1 + strayFiles);
}

TEST(AtomicFile, GivesANewFileThePermissionsThatTheUmaskLeaves) {
    const TempFolder temp;
    const Umask mask(0027);
    ASSERT_TRUE(writeWhole(temp / "a.png", "new"));
    EXPECT_EQ(permissionsOf(temp / "a.png"), 0640U);
}

TEST(AtomicFile, KeepsThePermissionsOfTheFileThatItReplaces) {
    const TempFolder temp;
    const std::string path = temp.file("a.png");
    for (const unsigned permissions : {0600U, 0666U, 0755U, 0444U}) {
        setPermissions(path, permissions);
        ASSERT_TRUE(writeWhole(path, "new"));
        EXPECT_EQ(permissionsOf(path), permissions);
    }
}

TEST(AtomicFile, TakesARelativePath) {
    const TempFolder temp;
    const CurrentFolder here(temp.path());
    EXPECT_TRUE(writeWhole("a.png", "new"));
    EXPECT_EQ(readFile(temp / "a.png"), "new");
}

TEST(AtomicFile, TakesTheLongestName) {
    const TempFolder temp;
    const std::string name(255, 'a');
    EXPECT_TRUE(writeWhole(temp / name, "new"));
    EXPECT_EQ(temp.names(), Names{name});
}

TEST(AtomicFile, FollowsALinkAndLeavesItALink) {
    const TempFolder temp;
    temp.file("real/a.png", "old");
    temp.link("second", "real/a.png");
    const std::string link = temp.link("first", temp / "second");
    ASSERT_TRUE(writeWhole(link, "new"));
    EXPECT_TRUE(fs::is_symlink(link));
    EXPECT_TRUE(fs::is_symlink(temp / "second"));
    EXPECT_EQ(readFile(temp / "real/a.png"), "new");
    EXPECT_EQ(temp.names(), (Names{"first", "real", "second"}));
}

TEST(AtomicFile, CreatesTheFileThatADanglingLinkNames) {
    const TempFolder temp;
    temp.folder("real");
    ASSERT_TRUE(writeWhole(temp.link("link", "real/new.png"), "new"));
    EXPECT_TRUE(fs::is_symlink(temp / "link"));
    EXPECT_EQ(readFile(temp / "real/new.png"), "new");
}

TEST(AtomicFile, FailsOnALoopOfLinks) {
    const TempFolder temp;
    temp.link("loop", "pool");
    EXPECT_EQ(AtomicFile(temp.link("pool", "loop")).error(), ELOOP);
}

TEST(AtomicFile, ReplacesOneOfSeveralHardLinks) {
    const TempFolder temp;
    const std::string path = temp.file("a.png", "old");
    fs::create_hard_link(path, temp / "b.png");
    ASSERT_TRUE(writeWhole(path, "new"));
    EXPECT_EQ(readFile(temp / "b.png"), "old");
}

TEST(AtomicFile, WritesAPipeDirectly) {
    const TempFolder temp;
    const std::string pipe = temp / "pipe";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    const FileDescriptor reader(::open(pipe.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    AtomicFile file(pipe);
    EXPECT_TRUE(write(file, "new"));
    std::array<char, 10> received{};
    EXPECT_EQ(::read(reader.get(), received.data(), received.size()), 3);
    EXPECT_STREQ(received.data(), "new");
    EXPECT_TRUE(file.commit());
    EXPECT_TRUE(fs::is_fifo(pipe));
    EXPECT_EQ(temp.names(), Names{"pipe"});
}

TEST(AtomicFile, WritesADeviceDirectlyAlsoThroughALink) {
    const TempFolder temp;
    EXPECT_TRUE(writeWhole("/dev/null", "new"));
    EXPECT_TRUE(writeWhole(temp.link("link", "/dev/null"), "new"));
    EXPECT_TRUE(fs::is_character_file("/dev/null"));
    EXPECT_EQ(temp.names(), Names{"link"});
}

TEST(AtomicFile, WritesAnOpenFilesNameInProcAtTheEndOfThatFile) {
    const TempFolder temp;
    const std::string path = temp.file("redirected", "before ");
    const ino_t before = inodeOf(path);
    const FileDescriptor open(::open(path.c_str(), O_WRONLY | O_CLOEXEC));
    EXPECT_TRUE(writeWhole(temp.link("stdout", "/proc/self/fd/" + std::to_string(open.get())), "new"));
    EXPECT_EQ(readFile(path), "before new");
    EXPECT_EQ(inodeOf(path), before);
}

TEST(AtomicFile, TellsThatTheDiskIsFull) {
    AtomicFile file("/dev/full");
    EXPECT_TRUE(file.good());
    EXPECT_FALSE(write(file, "new"));
    EXPECT_EQ(file.error(), ENOSPC);
    EXPECT_FALSE(file.commit());
    EXPECT_FALSE(file.good());
}

TEST(AtomicFile, RefusesAFolder) {
    const TempFolder temp;
    temp.folder("folder");
    for (const char* name : {"folder", "folder/", "."})
        EXPECT_EQ(AtomicFile(temp / name).error(), EISDIR) << name;
    EXPECT_EQ(AtomicFile("/").error(), EISDIR);
}

TEST(AtomicFile, RefusesAFolderThatCameInItsWay) {
    const TempFolder temp;
    {
        AtomicFile file(temp / "a.png");
        temp.folder("a.png");
        EXPECT_FALSE(file.commit());
        EXPECT_EQ(file.error(), EISDIR);
    }
    EXPECT_EQ(temp.names(), Names{"a.png"});
}

TEST(AtomicFile, RefusesPathsThatLeadNowhere) {
    const TempFolder temp;
    temp.file("file");
    EXPECT_EQ(AtomicFile(temp / "missing/a.png").error(), ENOENT);
    EXPECT_EQ(AtomicFile(temp / "missing/").error(), ENOENT);
    EXPECT_EQ(AtomicFile("").error(), ENOENT);
    EXPECT_EQ(AtomicFile(temp / "file/a.png").error(), ENOTDIR);
    EXPECT_EQ(AtomicFile(temp / std::string(256, 'a')).error(), ENAMETOOLONG);
    EXPECT_EQ(temp.names(), Names{"file"});
}

TEST(AtomicFile, RefusesAFolderThatMayNotBeWrittenTo) {
    const TempFolder temp;
    temp.file("closed/old.png", "old");
    setPermissions(temp / "closed", 0555);
    const OrdinaryUser user;
    for (const char* name : {"closed/new.png", "closed/old.png"}) {
        AtomicFile file(temp / name);
        EXPECT_EQ(file.error(), EACCES) << name;
        EXPECT_FALSE(write(file, "new")) << name;
        EXPECT_FALSE(file.commit()) << name;
        EXPECT_EQ(file.error(), EACCES) << name;
    }
    EXPECT_EQ(readFile(temp / "closed/old.png"), "old");
}

} // namespace

} // namespace SystemBackend
