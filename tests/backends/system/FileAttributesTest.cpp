#include "platform/FileAttributes.h"

#include "backends/system/TempFolder.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>

namespace {

BOOL ask(const std::string& ascii, WIN32_FILE_ATTRIBUTE_DATA& found) {
    return GetFileAttributesExW(std::wstring(ascii.begin(), ascii.end()).c_str(), GetFileExInfoStandard,
                                &found);
}

TEST(GetFileAttributesExW, TellsAttributesAndSize) {
    const TempFolder temp;
    WIN32_FILE_ATTRIBUTE_DATA found = {};
    EXPECT_TRUE(ask(temp.file("a.png", "12345"), found));
    EXPECT_EQ(found.dwFileAttributes, FILE_ATTRIBUTE_NORMAL);
    EXPECT_EQ(found.nFileSizeLow, 5U);
    EXPECT_EQ(found.nFileSizeHigh, 0U);
}

TEST(GetFileAttributesExW, TellsTheTimeOfTheLastWriteIn100Nanoseconds) {
    const TempFolder temp;
    const std::string file = temp.file("a.png", "12345");
    // The start of the year 2000 and 700 nanoseconds.
    const struct timespec times[2] = {{0, 0}, {946'684'800, 700}};
    ASSERT_EQ(::utimensat(AT_FDCWD, file.c_str(), times, 0), 0);
    WIN32_FILE_ATTRIBUTE_DATA found = {};
    EXPECT_TRUE(ask(file, found));
    const std::uint64_t units =
        std::uint64_t{found.ftLastWriteTime.dwHighDateTime} << 32 | found.ftLastWriteTime.dwLowDateTime;
    EXPECT_EQ(units, 125'911'584'000'000'007U);
}

TEST(GetFileAttributesExW, FindsAFileWhateverItsLettersAndSeparators) {
    const TempFolder temp;
    const std::string file = temp.file("Photo.PNG", "1");
    WIN32_FILE_ATTRIBUTE_DATA found = {};
    EXPECT_TRUE(ask(file.substr(0, file.rfind('/')) + "\\photo.png", found));
}

TEST(GetFileAttributesExW, TellsNothingOfWhatIsNotThere) {
    WIN32_FILE_ATTRIBUTE_DATA found = {};
    found.dwFileAttributes = 7;
    EXPECT_FALSE(ask("/no/such/file", found));
    EXPECT_FALSE(GetFileAttributesExW(nullptr, GetFileExInfoStandard, &found));
    EXPECT_FALSE(GetFileAttributesExW(L"/", GetFileExInfoStandard, nullptr));
    EXPECT_EQ(found.dwFileAttributes, 7U);
}

} // namespace
