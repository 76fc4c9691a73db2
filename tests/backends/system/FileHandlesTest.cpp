#include "platform/LastError.h"
#include "platform/System.h"

#include "backends/system/TempFolder.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <vector>

namespace {

std::wstring wide(const std::string& ascii) {
    return {ascii.begin(), ascii.end()};
}

HANDLE openHandle(const std::string& path) {
    return CreateFileW(wide(path).c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                       FILE_ATTRIBUTE_NORMAL, nullptr);
}

/// A file opened for the test.
class TestHandle {
public:
    explicit TestHandle(const std::string& path)
        : handle(openHandle(path)) {}
    ~TestHandle() { CloseHandle(handle); }
    TestHandle(const TestHandle&) = delete;
    TestHandle& operator=(const TestHandle&) = delete;

    bool isOpen() const { return handle != INVALID_HANDLE_VALUE; }
    HANDLE get() const { return handle; }

    std::string read(DWORD count) const {
        std::string bytes(count, '?');
        DWORD got = 0;
        EXPECT_TRUE(ReadFile(handle, bytes.data(), count, &got, nullptr));
        bytes.resize(got);
        return bytes;
    }

    /// The new position, or -1.
    std::int64_t move(std::int64_t distance, DWORD method) const {
        auto high = static_cast<LONG>(distance >> 32);
        const DWORD low = SetFilePointer(handle, static_cast<LONG>(distance), &high, method);
        if (low == INVALID_SET_FILE_POINTER && GetLastError() != NO_ERROR)
            return -1;
        return static_cast<std::int64_t>(high) << 32 | low;
    }

private:
    HANDLE handle;
};

/// Bytes that tell their place: no two runs of four are alike.
std::string numberedBytes(std::uint32_t size) {
    std::string bytes;
    for (std::uint32_t word = 0; bytes.size() < size; ++word) {
        for (const int shift : {24, 16, 8, 0})
            bytes += static_cast<char>(word >> shift & 0xFF);
    }
    bytes.resize(size);
    return bytes;
}

DWORD errorOfOpening(const std::string& path) {
    SetLastError(NO_ERROR);
    EXPECT_EQ(openHandle(path), INVALID_HANDLE_VALUE);
    return GetLastError();
}

TEST(FileHandles, ReadOnFromThePosition) {
    const TempFolder temp;
    const TestHandle file(temp.file("a", "abcdefgh"));
    EXPECT_EQ(file.read(3), "abc");
    EXPECT_EQ(file.read(2), "de");
    EXPECT_EQ(file.move(0, FILE_CURRENT), 5);
}

TEST(FileHandles, ReadLessAtTheEndAndThenNothing) {
    const TempFolder temp;
    const TestHandle file(temp.file("a", "abcdefgh"));
    EXPECT_EQ(file.read(6), "abcdef");
    EXPECT_EQ(file.read(6), "gh");
    EXPECT_EQ(file.read(6), "");
    EXPECT_EQ(file.move(0, FILE_CURRENT), 8);
}

TEST(FileHandles, SeeWhatIsAppendedAfterTheEndWasRead) {
    const TempFolder temp;
    const std::string path = temp.file("a", "abc");
    const TestHandle file(path);
    EXPECT_EQ(file.read(8), "abc");
    std::ofstream(path, std::ios::app) << "def";
    EXPECT_EQ(file.read(8), "def");
}

TEST(FileHandles, GiveTheSameBytesInReadsOfAnySize) {
    const TempFolder temp;
    const std::string content = numberedBytes(30000);
    const std::string path = temp.file("a", content);
    for (const DWORD count : {1U, 3U, 4095U, 4096U, 4097U, 9000U, 40000U}) {
        const TestHandle file(path);
        std::string bytes;
        for (std::string part = file.read(count); !part.empty(); part = file.read(count))
            bytes += part;
        EXPECT_TRUE(bytes == content) << count;
    }
}

TEST(FileHandles, GiveTheBytesOfTheirPlaceAfterJumpsOfAnySize) {
    const TempFolder temp;
    const std::string content = numberedBytes(30000);
    const TestHandle file(temp.file("a", content));
    std::int64_t place = 0;
    for (const std::int64_t jump : {10, 4080, -20, 4096, -4096, 9000, -1, 12000, -25000, 4095, 1}) {
        place = file.move(jump, FILE_CURRENT);
        ASSERT_GE(place, 0);
        EXPECT_EQ(file.read(16), content.substr(static_cast<std::size_t>(place), 16)) << place;
        EXPECT_EQ(file.move(-16, FILE_CURRENT), place);
    }
}

TEST(FileHandles, SeekFromStartPositionAndEnd) {
    const TempFolder temp;
    const TestHandle file(temp.file("a", "abcdefgh"));
    EXPECT_EQ(file.move(2, FILE_BEGIN), 2);
    EXPECT_EQ(file.read(1), "c");
    EXPECT_EQ(file.move(-1, FILE_CURRENT), 2);
    EXPECT_EQ(file.move(-3, FILE_END), 5);
    EXPECT_EQ(file.read(1), "f");
}

TEST(FileHandles, SeekBeyondTheEndWhereNothingIsRead) {
    const TempFolder temp;
    const TestHandle file(temp.file("a", "abcdefgh"));
    EXPECT_EQ(file.move(100, FILE_BEGIN), 100);
    EXPECT_EQ(file.read(4), "");
    EXPECT_EQ(file.move(0x7FFFFFFFFFFFFFFF, FILE_BEGIN), 0x7FFFFFFFFFFFFFFF);
    EXPECT_EQ(file.read(4), "");
}

TEST(FileHandles, ReadBeyondFourGibibytes) {
    const TempFolder temp;
    const std::string path = temp.file("large", "start");
    constexpr std::int64_t far = 0x1'2345'6789;
    {
        std::ofstream out(path, std::ios::binary | std::ios::in);
        out.seekp(far);
        out << "far away";
    }
    const TestHandle file(path);
    EXPECT_EQ(file.move(0, FILE_END), far + 8);
    EXPECT_EQ(file.move(far + 4, FILE_BEGIN), far + 4);
    EXPECT_EQ(file.read(4), "away");
}

TEST(FileHandles, SucceedAtThePositionThatLooksLikeFailure) {
    const TempFolder temp;
    const TestHandle file(temp.file("a"));
    SetLastError(ERROR_ACCESS_DENIED);
    LONG high = 1;
    EXPECT_EQ(SetFilePointer(file.get(), -1, &high, FILE_BEGIN), INVALID_SET_FILE_POINTER);
    EXPECT_EQ(GetLastError(), NO_ERROR);
    EXPECT_EQ(high, 1);
}

TEST(FileHandles, RefuseToSeekBeforeTheStart) {
    const TempFolder temp;
    const TestHandle file(temp.file("a", "abcdefgh"));
    EXPECT_EQ(file.move(4, FILE_BEGIN), 4);
    EXPECT_EQ(file.move(-5, FILE_CURRENT), -1);
    EXPECT_EQ(GetLastError(), ERROR_NEGATIVE_SEEK);
    EXPECT_EQ(file.read(1), "e");
}

TEST(FileHandles, TakeADistanceOfOneHalfAsSigned) {
    const TempFolder temp;
    const TestHandle file(temp.file("a", "abcdefgh"));
    EXPECT_EQ(SetFilePointer(file.get(), -2, nullptr, FILE_END), 6U);
    EXPECT_EQ(file.read(2), "gh");
}

TEST(FileHandles, RefuseAPositionThatHasNoPlaceForItsUpperHalf) {
    const TempFolder temp;
    const std::string path = temp.file("large");
    std::filesystem::resize_file(path, 0x100000000);
    const TestHandle file(path);
    EXPECT_EQ(SetFilePointer(file.get(), 0, nullptr, FILE_END), INVALID_SET_FILE_POINTER);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(file.move(0, FILE_CURRENT), 0);
}

TEST(FileHandles, RefuseASeekThatLeavesTheRangeOfPositions) {
    const TempFolder temp;
    const TestHandle file(temp.file("a", "abcdefgh"));
    EXPECT_EQ(file.move(0x7FFFFFFFFFFFFFFF, FILE_BEGIN), 0x7FFFFFFFFFFFFFFF);
    EXPECT_EQ(file.move(1, FILE_CURRENT), -1);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(file.move(0, 3), -1);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_PARAMETER);
}

TEST(FileHandles, OpenAResolvedPath) {
    const TempFolder temp;
    temp.file("Videos/Clip.mp4", "abc");
    const TestHandle file(temp / "VIDEOS\\clip.MP4");
    ASSERT_TRUE(file.isOpen());
    EXPECT_EQ(file.read(3), "abc");
}

TEST(FileHandles, TellWhyAFileDoesNotOpen) {
    const TempFolder temp;
    temp.file("a");
    EXPECT_EQ(errorOfOpening(temp / "missing"), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(errorOfOpening(temp / "a/b"), ERROR_PATH_NOT_FOUND);
    EXPECT_EQ(errorOfOpening(""), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(errorOfOpening(std::string(300, 'x')), ERROR_FILENAME_EXCED_RANGE);
    EXPECT_EQ(errorOfOpening(temp.folder("folder")), ERROR_ACCESS_DENIED);
}

TEST(FileHandles, RefuseAFileThatMayNotBeRead) {
    const TempFolder temp;
    const std::string path = temp.file("closed");
    std::filesystem::permissions(path, std::filesystem::perms::none);
    const OrdinaryUser user;
    EXPECT_EQ(errorOfOpening(path), ERROR_ACCESS_DENIED);
}

TEST(FileHandles, RefuseAPipeWithoutWaitingForItsWriter) {
    const TempFolder temp;
    const std::string path = temp / "pipe";
    ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
    EXPECT_EQ(errorOfOpening(path), ERROR_ACCESS_DENIED);
}

TEST(FileHandles, OpenNothingButForReading) {
    const TempFolder temp;
    const std::wstring path = wide(temp.file("a"));
    constexpr DWORD genericWrite = 0x40000000;
    constexpr DWORD createAlways = 2;
    EXPECT_EQ(CreateFileW(path.c_str(), genericWrite, 0, nullptr, OPEN_EXISTING, 0, nullptr),
              INVALID_HANDLE_VALUE);
    EXPECT_EQ(GetLastError(), ERROR_NOT_SUPPORTED);
    EXPECT_EQ(CreateFileW(path.c_str(), GENERIC_READ, 0, nullptr, createAlways, 0, nullptr),
              INVALID_HANDLE_VALUE);
    EXPECT_EQ(CreateFileW(nullptr, GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr),
              INVALID_HANDLE_VALUE);
    EXPECT_EQ(GetLastError(), ERROR_PATH_NOT_FOUND);
}

TEST(FileHandles, RefuseHandlesThatAreNone) {
    char byte = 0;
    DWORD count = 1;
    for (const HANDLE none : std::vector<HANDLE>{nullptr, INVALID_HANDLE_VALUE}) {
        SetLastError(NO_ERROR);
        EXPECT_FALSE(ReadFile(none, &byte, 1, &count, nullptr));
        EXPECT_EQ(count, 0U);
        EXPECT_EQ(GetLastError(), ERROR_INVALID_HANDLE);
        EXPECT_EQ(SetFilePointer(none, 0, nullptr, FILE_BEGIN), INVALID_SET_FILE_POINTER);
        EXPECT_FALSE(CloseHandle(none));
        EXPECT_EQ(GetLastError(), ERROR_INVALID_HANDLE);
    }
}

TEST(FileHandles, RefuseToReadWithoutAPlaceForTheResult) {
    const TempFolder temp;
    const TestHandle file(temp.file("a"));
    char byte = 0;
    DWORD count = 0;
    EXPECT_FALSE(ReadFile(file.get(), &byte, 1, nullptr, nullptr));
    EXPECT_EQ(GetLastError(), ERROR_INVALID_PARAMETER);
    EXPECT_FALSE(ReadFile(file.get(), nullptr, 1, &count, nullptr));
    EXPECT_TRUE(ReadFile(file.get(), nullptr, 0, &count, nullptr));
}

TEST(PathFileExistsW, FindsFilesAndFoldersByTheRulesForPaths) {
    const TempFolder temp;
    temp.file("Videos/Clip.mp4");
    EXPECT_TRUE(PathFileExistsW(wide(temp / "videos\\CLIP.mp4").c_str()));
    EXPECT_TRUE(PathFileExistsW(wide(temp / "Videos").c_str()));
    EXPECT_FALSE(PathFileExistsW(wide(temp / "Clip.mp4").c_str()));
    EXPECT_FALSE(PathFileExistsW(nullptr));
}

} // namespace
