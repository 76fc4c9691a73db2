#include "inspection/source/FileReader.h"
#include "inspection/source/DSExceptions.h"

#include "inspection/source/Mp4Bytes.h"
#include "support/TempFolder.h"

#include <gtest/gtest.h>

namespace {

using TestSupport::TempFolder;
using TestSupport::wideOf;

/// A file of these bytes, opened.
class OpenedFile {
public:
    explicit OpenedFile(const std::string& bytes)
        : path(wideOf(temp.write("a.mp4", bytes))) {
        reader.open(path);
    }

    FileReader* operator->() { return &reader; }
    std::string read(std::size_t count) {
        std::string bytes(count, '?');
        reader.read(bytes.data(), count);
        return bytes;
    }

private:
    TempFolder temp;
    std::wstring path;
    FileReader reader;
};

void expectRefused(const std::string& bytes) {
    EXPECT_THROW(OpenedFile{bytes}, MP4ParseException) << bytes;
}

TEST(FileReader, OpensAFileThatBeginsWithFtypAtItsStart) {
    OpenedFile file(Mp4Bytes::ftyp());
    EXPECT_EQ(file->tell(), 0U);
    EXPECT_EQ(file.read(8).substr(4), "ftyp");
}

TEST(FileReader, OpensEightBytesThatAreFtyp) {
    OpenedFile file("????ftyp");
    EXPECT_EQ(file->size(), 8U);
}

TEST(FileReader, RefusesAFileWhoseFirstAtomIsAnother) {
    expectRefused(Mp4Bytes::atom("moov") + Mp4Bytes::ftyp());
    expectRefused(Mp4Bytes::atom("wide") + Mp4Bytes::atom("mdat"));
    expectRefused(Mp4Bytes::atom("FTYP"));
}

TEST(FileReader, RefusesAFileThatIsTooShort) {
    expectRefused("");
    expectRefused("???ftyp");
}

TEST(FileReader, RefusesWhatIsNoFile) {
    const TempFolder temp;
    FileReader reader;
    EXPECT_THROW(reader.open(wideOf(temp / "missing.mp4")), MP4ParseException);
    EXPECT_THROW(reader.open(wideOf(temp / "")), MP4ParseException);
    EXPECT_THROW(reader.open(L""), MP4ParseException);
}

TEST(FileReader, ThrowsWhereNothingWasOpened) {
    FileReader reader;
    char byte = 0;
    EXPECT_THROW(reader.read(&byte, 1), MP4ParseException);
    EXPECT_THROW(reader.seek(0), MP4ParseException);
    EXPECT_THROW(reader.tell(), MP4ParseException);
    EXPECT_THROW(reader.size(), MP4ParseException);
}

TEST(FileReader, ReadsToTheEndAndNoByteFurther) {
    OpenedFile file("0123ftyp89");
    file->seek(6);
    EXPECT_EQ(file.read(4), "yp89");
    EXPECT_THROW(file.read(1), MP4ParseException);
    file->seek(7);
    EXPECT_THROW(file.read(4), MP4ParseException);
}

TEST(FileReader, ReadsNoMoreThanOneCallCan) {
    OpenedFile file("0123ftyp89");
    char byte = 0;
    EXPECT_THROW(file->read(&byte, 0x100000001), MP4ParseException);
}

TEST(FileReader, SeeksBeyondTheEndButReadsNothingThere) {
    OpenedFile file("0123ftyp");
    file->seek(0x123456789);
    EXPECT_EQ(file->tell(), 0x123456789U);
    EXPECT_THROW(file.read(1), MP4ParseException);
}

TEST(FileReader, ThrowsForAPositionThatThePlatformDoesNotHave) {
    OpenedFile file("0123ftyp");
    EXPECT_THROW(file->seek(0x8000000000000000), MP4ParseException);
}

TEST(FileReader, TellsTheSizeAndStaysWhereItIs) {
    OpenedFile file("0123ftyp89");
    file->seek(9);
    EXPECT_EQ(file->size(), 10U);
    EXPECT_EQ(file.read(1), "9");
}

TEST(FileReader, OpensAnotherFileInPlaceOfTheFirst) {
    const TempFolder temp;
    OpenedFile file("0123ftypfirst");
    file->open(wideOf(temp.write("b.mp4", std::string("????ftypsecond"))));
    EXPECT_EQ(file->tell(), 0U);
    EXPECT_EQ(file.read(14), "????ftypsecond");
}

} // namespace
