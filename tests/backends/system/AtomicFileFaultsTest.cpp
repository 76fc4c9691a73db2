#include "system/AtomicFile.h"

#include "backends/system/TempFolder.h"

#include <gtest/gtest.h>

#include <fcntl.h>

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <string_view>

namespace {

/// What the system calls below do instead of their work.
struct Faults {
    bool unnamedFilesAreUnknown = false;
    bool procIsMissing = false;
    std::size_t longestWrite = SIZE_MAX;
    int interruptedWrites = 0;
    int writeError = 0;
    int closeError = 0;
    int renameError = 0;
};

Faults faults;

bool failsWith(int error) {
    if (error != 0)
        errno = error;
    return error != 0;
}

} // namespace

extern "C" {

// NOLINTBEGIN(bugprone-reserved-identifier): the linker's names for a call and what stands in for it
int __real_access(const char* path, int mode);
int __real_open(const char* path, int flags, ...);
ssize_t __real_write(int file, const void* bytes, std::size_t size);
int __real_close(int file);
int __real_rename(const char* from, const char* to);

int __wrap_access(const char* path, int mode) {
    if (faults.procIsMissing && std::string_view(path).starts_with("/proc/") && failsWith(ENOENT))
        return -1;
    return __real_access(path, mode);
}

int __wrap_open(const char* path, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    if (faults.unnamedFilesAreUnknown && (flags & O_TMPFILE) == O_TMPFILE && failsWith(EOPNOTSUPP))
        return -1;
    return __real_open(path, flags, mode);
}

ssize_t __wrap_write(int file, const void* bytes, std::size_t size) {
    if (faults.interruptedWrites > 0 && failsWith(EINTR)) {
        --faults.interruptedWrites;
        return -1;
    }
    if (failsWith(faults.writeError))
        return -1;
    return __real_write(file, bytes, std::min(size, faults.longestWrite));
}

int __wrap_close(int file) {
    const int result = __real_close(file);
    return failsWith(faults.closeError) ? -1 : result;
}

int __wrap_rename(const char* from, const char* to) {
    return failsWith(faults.renameError) ? -1 : __real_rename(from, to);
}
// NOLINTEND(bugprone-reserved-identifier)

} // extern "C"

namespace SystemBackend {

namespace {

using Names = std::set<std::string>;
using TestSupport::readFile;

bool write(AtomicFile& file, std::string_view text) {
    return file.write(std::as_bytes(std::span(text)));
}

/// Sets the faults for one test.
class AtomicFileFaults : public testing::Test {
protected:
    void SetUp() override { faults = {}; }
    void TearDown() override { faults = {}; }

    TempFolder temp;
};

/// The same, on a file system where every file needs a name, and on one where it does not.
class AtomicFileOnAnyFileSystem : public AtomicFileFaults, public testing::WithParamInterface<bool> {
protected:
    void SetUp() override { faults = {.unnamedFilesAreUnknown = GetParam()}; }
};

TEST_P(AtomicFileOnAnyFileSystem, AppearsWithTheCommitAlone) {
    const std::string old = temp.file("old.png", "old");
    {
        AtomicFile dropped(temp / "dropped.png");
        AtomicFile replacing(old);
        AtomicFile fresh(temp / "new.png");
        EXPECT_TRUE(write(dropped, "text") && write(replacing, "text") && write(fresh, "text"));
        EXPECT_FALSE(temp.names().contains("new.png"));
        EXPECT_EQ(readFile(old), "old");
        EXPECT_TRUE(replacing.commit());
        EXPECT_TRUE(fresh.commit());
    }
    EXPECT_EQ(temp.names(), (Names{"new.png", "old.png"}));
    EXPECT_EQ(readFile(old), "text");
    EXPECT_EQ(readFile(temp / "new.png"), "text");
}

TEST_P(AtomicFileOnAnyFileSystem, KeepsThePermissionsOfTheFileThatItReplaces) {
    const std::string path = temp.file("a.png");
    std::filesystem::permissions(path, static_cast<std::filesystem::perms>(0606));
    AtomicFile file(path);
    EXPECT_TRUE(file.commit());
    EXPECT_EQ(static_cast<unsigned>(std::filesystem::status(path).permissions()), 0606U);
}

TEST_P(AtomicFileOnAnyFileSystem, LeavesTheOldFileAndNoOtherAfterAFailedWrite) {
    const std::string path = temp.file("a.png", "old");
    {
        AtomicFile file(path);
        EXPECT_TRUE(write(file, "half"));
        faults.writeError = ENOSPC;
        EXPECT_FALSE(write(file, "more"));
        faults.writeError = 0;
        EXPECT_FALSE(write(file, "again"));
        EXPECT_FALSE(file.commit());
        EXPECT_EQ(file.error(), ENOSPC);
    }
    EXPECT_EQ(temp.names(), Names{"a.png"});
    EXPECT_EQ(readFile(path), "old");
}

TEST_P(AtomicFileOnAnyFileSystem, LeavesNothingAfterAFailedClose) {
    {
        AtomicFile file(temp / "a.png");
        EXPECT_TRUE(write(file, "text"));
        faults.closeError = EDQUOT;
        EXPECT_FALSE(file.commit());
        EXPECT_EQ(file.error(), EDQUOT);
    }
    EXPECT_EQ(temp.names(), Names{});
}

TEST_P(AtomicFileOnAnyFileSystem, LeavesTheOldFileAloneAfterAFailedRename) {
    temp.file("a.png");
    {
        AtomicFile file(temp / "a.png");
        faults.renameError = EPERM;
        EXPECT_FALSE(file.commit());
        EXPECT_EQ(file.error(), EPERM);
    }
    EXPECT_EQ(temp.names(), Names{"a.png"});
}

INSTANTIATE_TEST_SUITE_P(Names, AtomicFileOnAnyFileSystem, testing::Values(false, true),
                         [](const auto& fileSystem) {
                             return fileSystem.param ? "NeededAtOnce" : "NeededLast";
                         });

TEST_F(AtomicFileFaults, LiesBesideTheTargetWhereNoNameCouldBeGivenLater) {
    faults.procIsMissing = true;
    AtomicFile file(temp / "a.png");
    EXPECT_EQ(temp.names().size(), 1U);
    EXPECT_TRUE(file.commit());
    EXPECT_EQ(temp.names(), Names{"a.png"});
}

TEST_F(AtomicFileFaults, NoTwoFilesShareANameBesideTheTarget) {
    faults.unnamedFilesAreUnknown = true;
    const AtomicFile first(temp / "a.png");
    const AtomicFile second(temp / "a.png");
    EXPECT_TRUE(first.good() && second.good());
    EXPECT_EQ(temp.names().size(), 2U);
}

TEST_F(AtomicFileFaults, AFileBesideTheTargetIsNeverMoreOpenThanTheOldOne) {
    faults.unnamedFilesAreUnknown = true;
    const std::string path = temp.file("a.png");
    std::filesystem::permissions(path, static_cast<std::filesystem::perms>(0600));
    const AtomicFile file(path);
    for (const std::string& name : temp.names())
        EXPECT_EQ(static_cast<unsigned>(std::filesystem::status(temp / name).permissions()), 0600U) << name;
}

TEST_F(AtomicFileFaults, GoesOnAfterAShortWrite) {
    faults.longestWrite = 3;
    AtomicFile file(temp / "a.png");
    EXPECT_TRUE(write(file, "more than three"));
    EXPECT_TRUE(file.commit());
    EXPECT_EQ(readFile(temp / "a.png"), "more than three");
}

TEST_F(AtomicFileFaults, GoesOnAfterASignal) {
    faults.interruptedWrites = 2;
    AtomicFile file(temp / "a.png");
    EXPECT_TRUE(write(file, "text"));
    EXPECT_TRUE(file.commit());
    EXPECT_EQ(readFile(temp / "a.png"), "text");
}

TEST_F(AtomicFileFaults, TakesAFileClosedUnderASignalForClosed) {
    AtomicFile file(temp / "a.png");
    faults.closeError = EINTR;
    EXPECT_TRUE(file.commit());
    EXPECT_EQ(temp.names(), Names{"a.png"});
}

} // namespace

} // namespace SystemBackend
