#include "platform/System.h"

#include "backends/system/TempFolder.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <array>
#include <cerrno>

namespace {

std::wstring wide(const std::string& ascii) {
    return {ascii.begin(), ascii.end()};
}

DWORD attributesOf(const std::string& ascii) {
    return GetFileAttributesW(wide(ascii).c_str());
}

struct StatResult {
    int result;
    struct _stat64i32 status;
};

StatResult statOf(const std::string& path) {
    StatResult found{};
    found.result = _stat64i32(path.c_str(), &found.status);
    return found;
}

TEST(Stat64i32, TellsSizeAndKindOfAFile) {
    const TempFolder temp;
    const StatResult found = statOf(temp.file("a.png", "12345"));
    EXPECT_EQ(found.result, 0);
    EXPECT_EQ(found.status.st_size, 5);
    EXPECT_EQ(found.status.st_mode & S_IFMT, S_IFREG);
}

TEST(Stat64i32, FindsAFolder) {
    const TempFolder temp;
    const StatResult found = statOf(temp.path() + '/');
    EXPECT_EQ(found.result, 0);
    EXPECT_EQ(found.status.st_mode & S_IFMT, S_IFDIR);
}

TEST(Stat64i32, ResolvesThePath) {
    const TempFolder temp;
    temp.file("Photos/Ä.png", "12345");
    EXPECT_EQ(statOf(temp / "PHOTOS\\ä.PNG").status.st_size, 5);
}

TEST(Stat64i32, HoldsTheSizeOfAVeryLargeFileAtItsLimit) {
    const TempFolder temp;
    const std::string file = temp.file("large");
    std::filesystem::resize_file(file, 0x7FFFFFFF);
    EXPECT_EQ(statOf(file).status.st_size, 0x7FFFFFFF);
    std::filesystem::resize_file(file, 0x100000001);
    EXPECT_EQ(statOf(file).result, 0);
    EXPECT_EQ(statOf(file).status.st_size, 0x7FFFFFFF);
}

TEST(Stat64i32, FailsWithoutAFile) {
    const TempFolder temp;
    temp.link("dangling", "nowhere");
    for (const char* name : {"missing", "dangling", "missing/a.png"}) {
        errno = 0;
        EXPECT_EQ(statOf(temp / name).result, -1) << name;
        EXPECT_EQ(errno, ENOENT) << name;
    }
    EXPECT_EQ(statOf("").result, -1);
}

TEST(Stat64i32, TellsAFolderThatMayNotBeEnteredFromAMissingFile) {
    const TempFolder temp;
    temp.file("closed/a.png");
    std::filesystem::permissions(temp / "closed", std::filesystem::perms::owner_read);
    {
        const OrdinaryUser user;
        errno = 0;
        EXPECT_EQ(statOf(temp / "closed/a.png").result, -1);
        EXPECT_EQ(errno, EACCES);
    }
    std::filesystem::permissions(temp / "closed", std::filesystem::perms::owner_all);
}

TEST(Stat64i32, FailsWithoutArguments) {
    struct _stat64i32 status {};
    EXPECT_EQ(_stat64i32(nullptr, &status), -1);
    EXPECT_EQ(_stat64i32("/", nullptr), -1);
}

TEST(Unlink, RemovesAFile) {
    const TempFolder temp;
    const std::string file = temp.file("a.png");
    temp.file("b.png");
    EXPECT_EQ(_unlink(file.c_str()), 0);
    EXPECT_EQ(temp.names(), std::set<std::string>{"b.png"});
}

TEST(Unlink, ResolvesTheFolder) {
    const TempFolder temp;
    temp.file("Photos/A.png");
    EXPECT_EQ(_unlink((temp / "photos\\A.png").c_str()), 0);
    EXPECT_FALSE(std::filesystem::exists(temp / "Photos/A.png"));
}

TEST(Unlink, NeverTakesAFileForOneOfAnotherCase) {
    const TempFolder temp;
    temp.file("a.png");
    EXPECT_EQ(_unlink((temp / "A.png").c_str()), -1);
    EXPECT_EQ(temp.names(), std::set<std::string>{"a.png"});
}

TEST(Unlink, PrefersTheNameAsItStands) {
    const TempFolder temp;
    temp.file("a.png");
    temp.file("A.PNG");
    EXPECT_EQ(_unlink((temp / "a.png").c_str()), 0);
    EXPECT_EQ(temp.names(), std::set<std::string>{"A.PNG"});
}

TEST(Unlink, RemovesALinkAndNotWhatItLeadsTo) {
    const TempFolder temp;
    temp.file("a.png");
    const std::string dangling = temp.link("dangling", "nowhere");
    const std::string link = temp.link("link", "a.png");
    EXPECT_EQ(_unlink(dangling.c_str()), 0);
    EXPECT_EQ(_unlink(link.c_str()), 0);
    EXPECT_EQ(temp.names(), std::set<std::string>{"a.png"});
}

TEST(Unlink, LeavesAFolderAlone) {
    const TempFolder temp;
    const std::string folder = temp.folder("Empty");
    EXPECT_EQ(_unlink(folder.c_str()), -1);
    EXPECT_EQ(_unlink((temp / "empty").c_str()), -1);
    EXPECT_EQ(temp.names(), std::set<std::string>{"Empty"});
}

TEST(Unlink, FailsWithoutAFile) {
    const TempFolder temp;
    errno = 0;
    EXPECT_EQ(_unlink((temp / "missing").c_str()), -1);
    EXPECT_EQ(errno, ENOENT);
    EXPECT_EQ(_unlink(""), -1);
    EXPECT_EQ(_unlink(nullptr), -1);
}

TEST(GetFileAttributes, TellsFilesFromFolders) {
    const TempFolder temp;
    EXPECT_EQ(attributesOf(temp.file("a.png")), FILE_ATTRIBUTE_NORMAL);
    EXPECT_EQ(attributesOf(temp.folder("b")), FILE_ATTRIBUTE_DIRECTORY);
}

TEST(GetFileAttributes, MarksAFileThatNobodyMayWriteTo) {
    const TempFolder temp;
    const std::string file = temp.file("a.png");
    std::filesystem::permissions(file, static_cast<std::filesystem::perms>(0444));
    EXPECT_EQ(attributesOf(file), FILE_ATTRIBUTE_READONLY);
}

TEST(GetFileAttributes, ResolvesThePath) {
    const TempFolder temp;
    temp.file("Photos/\u00C4 \U0001F600.png");
    const std::wstring path = wide(temp / "photos\\") + L"\u00E4 \U0001F600.PNG";
    EXPECT_EQ(GetFileAttributesW(path.c_str()), FILE_ATTRIBUTE_NORMAL);
}

TEST(GetFileAttributes, AreInvalidWithoutAFile) {
    const TempFolder temp;
    EXPECT_EQ(attributesOf(temp / "missing"), INVALID_FILE_ATTRIBUTES);
    EXPECT_EQ(attributesOf(temp.link("dangling", "nowhere")), INVALID_FILE_ATTRIBUTES);
    EXPECT_EQ(attributesOf(""), INVALID_FILE_ATTRIBUTES);
    EXPECT_EQ(GetFileAttributesW(nullptr), INVALID_FILE_ATTRIBUTES);
}

std::wstring tempPath() {
    std::array<WCHAR, 100> buffer{};
    const DWORD length = GetTempPathW(buffer.size(), buffer.data());
    return {buffer.data(), length};
}

TEST(GetTempPath, IsTheConfiguredFolderWithASeparator) {
    const EnvironmentVariable variable("TMPDIR", "/somewhere/else");
    EXPECT_EQ(tempPath(), L"/somewhere/else/");
}

TEST(GetTempPath, DoublesNoSeparator) {
    const EnvironmentVariable variable("TMPDIR", "/somewhere/else/");
    EXPECT_EQ(tempPath(), L"/somewhere/else/");
}

TEST(GetTempPath, IsTheCommonFolderWithoutConfiguration) {
    for (const char* value : {static_cast<const char*>(nullptr), ""}) {
        const EnvironmentVariable variable("TMPDIR", value);
        EXPECT_EQ(tempPath(), L"/tmp/");
    }
}

TEST(GetTempPath, TellsTheRoomThatItNeedsWithTheTerminator) {
    const EnvironmentVariable variable("TMPDIR", "/ab");
    EXPECT_EQ(GetTempPathW(0, nullptr), 5U);
    std::array<WCHAR, 5> buffer{};
    EXPECT_EQ(GetTempPathW(4, buffer.data()), 5U);
    EXPECT_EQ(buffer[0], L'\0');
}

TEST(GetTempPath, TellsTheLengthWithoutTheTerminatorOnceItFits) {
    const EnvironmentVariable variable("TMPDIR", "/ab");
    std::array<WCHAR, 6> buffer;
    buffer.fill(L'#');
    EXPECT_EQ(GetTempPathW(5, buffer.data()), 4U);
    EXPECT_EQ(std::wstring(buffer.data(), 6), std::wstring(L"/ab/\0#", 6));
}

} // namespace
