#include "production/ThumbnailDiagnosis.h"

#include "support/GdiplusUser.h"
#include "support/JpegFile.h"
#include "support/PdfFile.h"
#include "support/PngFile.h"
#include "support/TempFolder.h"

#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <set>
#include <stdexcept>

namespace KestoThumbnailer {

namespace {

/// Gives up the rights of the superuser, whom no file refuses, while it lives.
class OrdinaryUser {
public:
    OrdinaryUser() {
        if (isRoot && ::seteuid(65534) != 0)
            throw std::runtime_error("can't become an ordinary user");
    }
    ~OrdinaryUser() {
        if (isRoot && ::seteuid(0) != 0)
            std::abort();
    }
    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;

private:
    const bool isRoot = ::geteuid() == 0;
};

class ThumbnailDiagnosisTest : public ::testing::Test {
protected:
    static std::string wordFor(const std::filesystem::path& path) {
        return WordForReason(DiagnoseStillImage(TestSupport::wideOf(path)).reason);
    }

    static std::vector<unsigned char> goodPng(int width = 64, int height = 64) {
        const TestSupport::PngFile png{.width = width, .height = height, .pixelAt = [](int x, int y) {
                                           const auto noise =
                                               static_cast<std::uint32_t>(x * 7919 + y * 104729);
                                           return 0xFF000000U | ((noise * noise) & 0xFFFFFFU);
                                       }};
        return png.bytes();
    }

    static std::string page(int points, bool encrypted = false) {
        return TestSupport::PdfFile{.widthInPoints = points, .heightInPoints = points, .encrypted = encrypted}
            .text();
    }

    TestSupport::TempFolder folder;
    std::optional<TestSupport::GdiplusUser> gdiplus{std::in_place};
};

} // namespace

TEST_F(ThumbnailDiagnosisTest, TheSentenceNamesTheFile) {
    const std::filesystem::path path = folder / "Sch\xC3\xB6n.png";
    EXPECT_EQ(DiagnoseStillImage(TestSupport::wideOf(path)).sentence,
              '"' + path.string() + "\" does not exist.");
}

TEST_F(ThumbnailDiagnosisTest, EveryReasonHasAWordOfItsOwn) {
    std::set<std::string> words;
    for (int reason = 0; reason <= static_cast<int>(NoThumbnailReason::Unavailable); ++reason) {
        const std::string word = WordForReason(static_cast<NoThumbnailReason>(reason));
        EXPECT_TRUE(
            std::all_of(word.begin(), word.end(), [](char c) { return c == '-' || (c >= 'a' && c <= 'z'); }));
        EXPECT_TRUE(words.insert(word).second) << word;
    }
}

TEST_F(ThumbnailDiagnosisTest, MissingIsAFileThatIsNotThereAndAnEmptyPath) {
    EXPECT_EQ(wordFor(folder / "missing.png"), "missing");
    EXPECT_EQ(wordFor(folder / "missing.pdf"), "missing");
    EXPECT_EQ(wordFor(""), "missing");
}

TEST_F(ThumbnailDiagnosisTest, AFolderAndAPipeAreNoFiles) {
    const std::filesystem::path pipe = folder / "pipe.png";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(wordFor(pipe), "not-a-file");
    EXPECT_EQ(wordFor(folder / ""), "not-a-file");
}

TEST_F(ThumbnailDiagnosisTest, UnreadableIsAFileWithoutTheRightToReadIt) {
    std::filesystem::permissions(folder / "", std::filesystem::perms::all);
    // Opens the module of documents while it can be reached: the build may lie in root's own folder.
    ASSERT_EQ(wordFor(folder.write("good.pdf", page(72))), "nothing-wrong");
    for (const char* name : {"locked.png", "locked.pdf"}) {
        const std::filesystem::path path = folder.write(name, goodPng());
        std::filesystem::permissions(path, std::filesystem::perms::none);
        const OrdinaryUser ordinary;
        EXPECT_EQ(wordFor(path), "unreadable");
    }
}

TEST_F(ThumbnailDiagnosisTest, UnreadableIsAFileInAFolderThatMayNotBeEntered) {
    std::filesystem::permissions(folder / "", std::filesystem::perms::all);
    const std::filesystem::path closed = folder / "closed";
    std::filesystem::create_directory(closed);
    folder.write("closed/good.png", goodPng());
    std::filesystem::permissions(closed, std::filesystem::perms::owner_read);
    {
        const OrdinaryUser ordinary;
        EXPECT_EQ(wordFor(closed / "good.png"), "unreadable");
    }
    std::filesystem::permissions(closed, std::filesystem::perms::owner_all);
}

TEST_F(ThumbnailDiagnosisTest, EmptyIsAFileOfNoBytes) {
    EXPECT_EQ(wordFor(folder.write("empty.png", "")), "empty");
    EXPECT_EQ(wordFor(folder.write("empty.pdf", "")), "empty");
}

TEST_F(ThumbnailDiagnosisTest, UnknownFormatIsAFileOfNoKnownKind) {
    EXPECT_EQ(wordFor(folder.write("notes.png", "just some text, and no picture")), "unknown-format");
    EXPECT_EQ(wordFor(folder.write("notes.pdf", "just some text, and no document")), "unknown-format");
}

TEST_F(ThumbnailDiagnosisTest, TruncatedIsAFileThatEndsTooEarly) {
    auto png = goodPng();
    png.resize(png.size() / 2);
    EXPECT_EQ(wordFor(folder.write("half.png", png)), "truncated");
    const TestSupport::JpegFile file{.width = 64, .height = 64, .pixelAt = [](int x, int y) {
                                         return static_cast<std::uint32_t>(x * y * 977);
                                     }};
    auto jpeg = file.bytes();
    jpeg.resize(jpeg.size() / 2);
    EXPECT_EQ(wordFor(folder.write("half.jpg", jpeg)), "truncated");
}

TEST_F(ThumbnailDiagnosisTest, DamagedIsAFileWithBytesThatMakeNoSense) {
    auto png = goodPng();
    std::fill(png.begin() + static_cast<std::ptrdiff_t>(png.size()) / 2, png.end() - 12, 0x5A);
    EXPECT_EQ(wordFor(folder.write("damaged.png", png)), "damaged");
}

TEST_F(ThumbnailDiagnosisTest, TooLargeIsAPictureOverThePixelBudget) {
    // A header that promises 60000 by 60000 pixels; the chunk's checksum is made to fit.
    const TestSupport::PngFile png{.width = 1, .height = 1, .pixelAt = [](int, int) { return 0U; }};
    std::vector<unsigned char> bytes = png.bytes();
    const unsigned char hugeHeader[] = {0, 0, 0xEA, 0x60, 0, 0, 0xEA, 0x60, 8, 6, 0, 0, 0};
    std::copy(std::begin(hugeHeader), std::end(hugeHeader), bytes.begin() + 16);
    const std::uint32_t checksum = TestSupport::pngChecksum({bytes.data() + 12, 17});
    for (int shift = 24, at = 29; shift >= 0; shift -= 8, ++at)
        bytes[static_cast<std::size_t>(at)] = static_cast<unsigned char>(checksum >> shift);
    EXPECT_EQ(wordFor(folder.write("huge.png", bytes)), "too-large");
}

TEST_F(ThumbnailDiagnosisTest, TooLargeIsAPageOverThePixelBudget) {
    constexpr int points = 24000; // 32000 pixels a side
    EXPECT_EQ(wordFor(folder.write("huge.pdf", page(points))), "too-large");
}

TEST_F(ThumbnailDiagnosisTest, EncryptedIsADocumentUnderAPassword) {
    EXPECT_EQ(wordFor(folder.write("secret.pdf", page(72, /*encrypted=*/true))), "encrypted");
}

TEST_F(ThumbnailDiagnosisTest, NoPagesIsADocumentWithoutAny) {
    EXPECT_EQ(wordFor(folder.write("none.pdf", TestSupport::PdfFile{.pages = 0}.text())), "no-pages");
}

TEST_F(ThumbnailDiagnosisTest, NothingIsWrongWithAGoodFile) {
    EXPECT_EQ(wordFor(folder.write("good.png", goodPng())), "nothing-wrong");
    EXPECT_EQ(wordFor(folder.write("good.pdf", page(72))), "nothing-wrong");
}

TEST_F(ThumbnailDiagnosisTest, UnavailableIsAPictureBeforeGdiplusIsStarted) {
    const std::filesystem::path path = folder.write("good.png", goodPng());
    gdiplus.reset();
    EXPECT_EQ(wordFor(path), "unavailable");
}

} // namespace KestoThumbnailer
