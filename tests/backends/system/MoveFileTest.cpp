#include "platform/System.h"

#include "backends/system/TempFolder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <string>

namespace {

/// The source whose moves find no way; the names lie on different file systems, so to speak.
std::string distantSource;

} // namespace

extern "C" {

// NOLINTBEGIN(bugprone-reserved-identifier): the linker's names for a call and what stands in for it
int __real_rename(const char* from, const char* to);

int __wrap_rename(const char* from, const char* to) {
    if (from == distantSource) {
        errno = EXDEV;
        return -1;
    }
    return __real_rename(from, to);
}
// NOLINTEND(bugprone-reserved-identifier)

} // extern "C"

namespace {

using TestSupport::readFile;

constexpr DWORD bothFlags = MOVEFILE_REPLACE_EXISTING | MOVEFILE_COPY_ALLOWED;

bool moved(const std::string& from, const std::string& to, DWORD flags = bothFlags) {
    return MoveFileExW(std::wstring(from.begin(), from.end()).c_str(),
                       std::wstring(to.begin(), to.end()).c_str(), flags) != FALSE;
}

class MoveFile : public ::testing::Test {
protected:
    void TearDown() override { distantSource.clear(); }

    TempFolder temp;
};

TEST_F(MoveFile, GivesAFileAnotherName) {
    const std::string from = temp.file("a.png", "picture");
    EXPECT_TRUE(moved(from, temp / "b.png"));
    EXPECT_EQ(temp.names(), (std::set<std::string>{"b.png"}));
    EXPECT_EQ(readFile(temp / "b.png"), "picture");
}

TEST_F(MoveFile, TakesThePlaceOfAFileOfThatName) {
    const std::string to = temp.file("b.png", "older and longer");
    EXPECT_TRUE(moved(temp.file("a.png", "new"), to));
    EXPECT_EQ(temp.names(), (std::set<std::string>{"b.png"}));
    EXPECT_EQ(readFile(to), "new");
}

TEST_F(MoveFile, FindsItsFileByThePathRules) {
    temp.file("Sheets/A.png", "picture");
    EXPECT_TRUE(moved(temp / "sheets\\a.PNG", temp / "sheets\\B.png"));
    EXPECT_EQ(readFile(temp / "Sheets/B.png"), "picture");
    EXPECT_EQ(temp.names(), (std::set<std::string>{"Sheets"}));
}

TEST_F(MoveFile, LeavesANameInOtherCaseAlone) {
    temp.file("sheet.PNG", "other");
    EXPECT_TRUE(moved(temp.file("a.png", "picture"), temp / "sheet.png"));
    EXPECT_EQ(readFile(temp / "sheet.PNG"), "other");
    EXPECT_EQ(readFile(temp / "sheet.png"), "picture");
}

TEST_F(MoveFile, BetweenFileSystemsCopiesAndRemoves) {
    const std::string content(200000, 'x');
    distantSource = temp.file("a.png", content);
    const std::string to = temp.file("b.png", "older");
    EXPECT_TRUE(moved(distantSource, to));
    EXPECT_EQ(temp.names(), (std::set<std::string>{"b.png"}));
    EXPECT_EQ(readFile(to), content);
}

TEST_F(MoveFile, BetweenFileSystemsFailsForAFolder) {
    distantSource = temp.folder("a");
    EXPECT_FALSE(moved(distantSource, temp / "b"));
    EXPECT_EQ(temp.names(), (std::set<std::string>{"a"}));
}

TEST_F(MoveFile, BetweenFileSystemsLeavesTheFileWhenTheCopyFails) {
    distantSource = temp.file("a.png", "picture");
    EXPECT_FALSE(moved(distantSource, temp / "missing/b.png"));
    EXPECT_EQ(readFile(distantSource), "picture");
}

TEST_F(MoveFile, FailsWithoutAFile) {
    const std::string to = temp.file("b.png", "older");
    EXPECT_FALSE(moved(temp / "a.png", to));
    EXPECT_FALSE(moved("", to));
    EXPECT_EQ(readFile(to), "older");
}

TEST_F(MoveFile, FailsWithoutNames) {
    EXPECT_EQ(MoveFileExW(nullptr, L"/tmp/b.png", bothFlags), FALSE);
    EXPECT_EQ(MoveFileExW(L"/tmp/a.png", nullptr, bothFlags), FALSE);
}

TEST_F(MoveFile, KnowsItsFlagsTogetherAlone) {
    const std::string from = temp.file("a.png");
    for (const DWORD flags : {DWORD{0}, MOVEFILE_REPLACE_EXISTING, MOVEFILE_COPY_ALLOWED, bothFlags | 8})
        EXPECT_FALSE(moved(from, temp / "b.png", flags)) << flags;
    EXPECT_EQ(temp.names(), (std::set<std::string>{"a.png"}));
}

} // namespace
