#include "DrawnPage.h"
#include "PdfBuilder.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include <sys/stat.h>

namespace {

using PageRasterLib::Pdf;
using PageRasterLib::PdfState;
using TestSupport::TempFolder;

std::string redPage() {
    return PdfBuilder{}.page(mediaBox(75, 75), "1 0 0 rg 0 0 75 75 re f").bytes();
}

bool hasSize(const Pdf& pdf) {
    int width = 0;
    int height = 0;
    return pdf.DefaultDimensions(1, width, height);
}

bool canBeDrawn(const Pdf& pdf) {
    std::vector<std::uint8_t> pixels(256);
    return pdf.Rasterize(8, 8, 1, pixels.data(), 32);
}

/// The state of a document that answers every call with false.
PdfState refusalOf(const std::string& path) {
    const Pdf pdf(path);
    EXPECT_FALSE(hasSize(pdf)) << path;
    EXPECT_FALSE(canBeDrawn(pdf)) << path;
    return pdf.State();
}

PdfState refusalOfBytes(const std::string& bytes) {
    const TempFolder folder;
    return refusalOf(folder.write("document.pdf", bytes).string());
}

std::string dataFile(const std::string& name) {
    return std::string(KESTO_PDF_TEST_DATA) + "/" + name;
}

/// Calls here end after 300 ms. No other thread runs that could read the environment.
class HostilePdf : public testing::Test {
protected:
    HostilePdf() { ::setenv("KESTO_PDF_TIME_LIMIT_MS", "300", 1); }   // NOLINT(concurrency-mt-unsafe)
    ~HostilePdf() override { ::unsetenv("KESTO_PDF_TIME_LIMIT_MS"); } // NOLINT(concurrency-mt-unsafe)
};

TEST(PdfState, OfAGoodDocumentIsReadable) {
    EXPECT_EQ(OpenedPdf(redPage())->State(), PdfState::Readable);
}

TEST(PdfState, OfAMissingFileIsUnreadable) {
    EXPECT_EQ(refusalOf("/no/such/file.pdf"), PdfState::Unreadable);
    EXPECT_EQ(refusalOf(""), PdfState::Unreadable);
}

TEST(PdfState, OfAFolderIsUnreadable) {
    const TempFolder folder;
    EXPECT_EQ(refusalOf((folder / "").string()), PdfState::Unreadable);
}

TEST(PdfState, OfAPipeIsUnreadableAtOnce) {
    const TempFolder folder;
    const std::string pipe = (folder / "pipe.pdf").string();
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(refusalOf(pipe), PdfState::Unreadable);
}

TEST(PdfState, OfAnEmptyFileIsEmpty) {
    EXPECT_EQ(refusalOfBytes(""), PdfState::Empty);
}

TEST(PdfState, OfADocumentWithoutPagesIsEmpty) {
    EXPECT_EQ(refusalOfBytes(PdfBuilder{}.bytes()), PdfState::Empty);
}

TEST(PdfState, OfAnotherKindOfFileIsNotAPdf) {
    EXPECT_EQ(refusalOfBytes("GIF89a and so on"), PdfState::NotAPdf);
}

TEST(PdfState, OfAHeaderAfterTheFirst1024BytesIsNotAPdf) {
    EXPECT_EQ(refusalOfBytes(std::string(1020, ' ').append(redPage())), PdfState::NotAPdf);
}

TEST(PdfState, OfAHeaderThatEndsTheFirst1024BytesIsReadable) {
    const OpenedPdf pdf(std::string(1018, '\n').append(redPage()));
    EXPECT_EQ(pdf->State(), PdfState::Readable);
    EXPECT_EQ(pdf.draw(8, 8).at(4, 4), red);
}

TEST(PdfState, OfNothingButAHeaderIsDamaged) {
    EXPECT_EQ(refusalOfBytes("%PDF-1.7\n"), PdfState::Damaged);
}

TEST(PdfState, OfADocumentWithAPasswordIsEncrypted) {
    EXPECT_EQ(refusalOf(dataFile("user-password-aes256.pdf")), PdfState::Encrypted);
    EXPECT_EQ(refusalOf(dataFile("user-password-rc4.pdf")), PdfState::Encrypted);
}

TEST(PdfState, OfADocumentEncryptedForEveryoneIsReadable) {
    for (const char* name : {"empty-user-password-aes256.pdf", "empty-user-password-rc4.pdf"}) {
        const Pdf pdf(dataFile(name));
        EXPECT_EQ(pdf.State(), PdfState::Readable) << name;
        std::vector<std::uint8_t> pixels(256);
        ASSERT_TRUE(pdf.Rasterize(8, 8, 1, pixels.data(), 32)) << name;
        EXPECT_EQ(pixels[0], 0) << name; // red has no blue
        EXPECT_EQ(pixels[2], 255) << name;
    }
}

TEST(PdfPath, MayHaveBackslashesAndAnotherCase) {
    const TempFolder folder;
    std::string path = folder.write("Document.PDF", redPage()).string();
    path[path.rfind('/')] = '\\';
    EXPECT_EQ(Pdf(path).State(), PdfState::Readable);
    EXPECT_EQ(Pdf((folder / "dOCUMENT.pdf").string()).State(), PdfState::Readable);
}

TEST(PdfPath, IsUtf8) {
    const TempFolder folder;
    EXPECT_EQ(Pdf(folder.write("Ünïcode 頁.pdf", redPage()).string()).State(), PdfState::Readable);
}

TEST(DamagedPdf, IsDrawnOrRefusedWhereverItIsCut) {
    const TempFolder folder;
    const std::string whole = redPage();
    for (std::size_t length = 0; length < whole.size(); ++length) {
        const Pdf pdf(folder.write("document.pdf", std::string_view(whole).substr(0, length)).string());
        EXPECT_EQ(canBeDrawn(pdf), hasSize(pdf)) << length;
    }
}

TEST(DamagedPdf, IsDrawnOrRefusedWhateverByteIsWrong) {
    const TempFolder folder;
    const std::string whole = redPage();
    for (std::size_t place = 0; place < whole.size(); ++place) {
        std::string damaged = whole;
        damaged[place] = static_cast<char>(damaged[place] ^ 0x15);
        const Pdf pdf(folder.write("document.pdf", damaged).string());
        EXPECT_EQ(canBeDrawn(pdf), hasSize(pdf)) << place;
    }
}

TEST(DamagedPdf, WithoutItsTableIsRepaired) {
    const std::string whole = redPage();
    const OpenedPdf pdf(whole.substr(0, whole.find("xref")) + "trailer << /Root 1 0 R >>\n");
    EXPECT_EQ(pdf.draw(8, 8).at(4, 4), red);
}

TEST(DamagedPdf, WritesNothingToTheErrorStream) {
    testing::internal::CaptureStderr();
    const OpenedPdf pdf(
        PdfBuilder{}.page(mediaBox(75, 75), "nonsense ) >> 1 0 0 rg /X Do ]").bytes().substr(9));
    const OpenedPdf cut("%PDF-1.7\n3 0 obj << /Length 9 0 R >> stream");
    canBeDrawn(*pdf);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(DamagedPdf, WithAPageTreeThatIsItsOwnChildHasNoPages) {
    const OpenedPdf pdf(PdfBuilder{}.pageTreeRoot("<< /Type /Pages /Kids [2 0 R 2 0 R] /Count 2 >>").bytes());
    EXPECT_FALSE(hasSize(*pdf));
}

TEST(DamagedPdf, WithObjectsThatAreThemselvesIsRefused) {
    EXPECT_EQ(refusalOfBytes(PdfBuilder{}.catalog("1 0 R").bytes()), PdfState::Damaged);
    EXPECT_EQ(refusalOfBytes(PdfBuilder{}.pageTreeRoot("2 0 R").bytes()), PdfState::Damaged);
    EXPECT_FALSE(hasSize(*OpenedPdf(PdfBuilder{}.pageTreeRoot("<< /Kids 2 0 R /Count 1 >>").bytes())));
}

TEST(DamagedPdf, WithAPageTreeOfSharedChildrenIsRefusedAtOnce) {
    // Each of sixty nodes has the next one twice: 2^60 ways down, and no page at their end.
    PdfBuilder builder;
    for (int node = 3; node < 63; ++node)
        builder.add("<< /Type /Pages /Count 1 /Kids [" + reference(node + 1) + " " + reference(node + 1) +
                    "] >>");
    builder.add("<< /Type /Pages /Count 0 /Kids [] >>");
    builder.pageTreeRoot("<< /Type /Pages /Count 1 /Kids [3 0 R 3 0 R] >>");
    EXPECT_FALSE(hasSize(*OpenedPdf(builder.bytes())));
}

TEST(DamagedPdf, WithFewerPagesThanItSaysEndsAtTheLast) {
    PdfBuilder builder;
    builder.page(mediaBox(75, 75));
    builder.pageTreeRoot("<< /Type /Pages /Kids [4 0 R] /Count 3 >>");
    const OpenedPdf pdf(builder.bytes());
    std::vector<std::uint8_t> pixels(400);
    EXPECT_TRUE(pdf->Rasterize(10, 10, 1, pixels.data(), 40));
    EXPECT_FALSE(pdf->Rasterize(10, 10, 2, pixels.data(), 40));
}

TEST_F(HostilePdf, WhoseFormsMultiplyIsGivenUp) {
    PdfBuilder builder;
    for (int form = 3; form < 63; ++form)
        builder.addStream("/Type /XObject /Subtype /Form /BBox [0 0 75 75] /Resources << /XObject << /F " +
                              reference(form + 1) + " >> >>",
                          "/F Do /F Do");
    builder.addStream("/Type /XObject /Subtype /Form /BBox [0 0 75 75]", "0 0 1 1 re f");
    builder.page(mediaBox(75, 75), "/F Do", "/XObject << /F 3 0 R >>");
    EXPECT_FALSE(canBeDrawn(*OpenedPdf(builder.bytes())));
}

TEST_F(HostilePdf, WhoseSoftMasksMultiplyIsGivenUp) {
    PdfBuilder builder;
    for (int form = 3; form < 63; ++form)
        builder.addStream(
            "/Type /XObject /Subtype /Form /BBox [0 0 75 75] /Group << /S /Transparency /CS /DeviceGray >> "
            "/Resources << /ExtGState << /G << /SMask << /S /Luminosity /G " +
                reference(form + 1) + " >> >> >> >>",
            "/G gs 0 0 9 9 re f /G gs 0 0 9 9 re f");
    builder.addStream("/Type /XObject /Subtype /Form /BBox [0 0 75 75]", "0 0 1 1 re f");
    builder.page(mediaBox(75, 75), "/G gs 0 0 9 9 re f",
                 "/ExtGState << /G << /SMask << /S /Luminosity /G 3 0 R >> >> >>");
    EXPECT_FALSE(canBeDrawn(*OpenedPdf(builder.bytes())));
}

TEST_F(HostilePdf, ThatWasGivenUpStaysSo) {
    PdfBuilder builder;
    std::string endless;
    for (int repeat = 0; repeat < 400'000; ++repeat)
        endless += "0 0 75 75 re f\n";
    builder.page(mediaBox(75, 75), endless);
    const OpenedPdf pdf(builder.bytes());
    std::vector<std::uint8_t> pixels(std::size_t{4000} * 4000 * 4);
    EXPECT_FALSE(pdf->Rasterize(4000, 4000, 1, pixels.data(), 4000 * 4));
    EXPECT_FALSE(hasSize(*pdf));
}

TEST_F(HostilePdf, WithDashesFarBelowAPixelIsDrawn) {
    const OpenedPdf pdf(
        PdfBuilder{}.page(mediaBox(75, 75), "10 w [0.0000001] 0 d 0 37.5 m 75 37.5 l S").bytes());
    EXPECT_EQ(pdf.draw(100, 100).at(50, 50), black);
}

TEST_F(HostilePdf, WithATinyPatternIsDrawn) {
    PdfBuilder builder;
    const int tile =
        builder.addStream("/Type /Pattern /PatternType 1 /PaintType 1 /TilingType 1 /BBox [0 0 1 1] "
                          "/XStep 0.00001 /YStep 0.00001 /Resources << >>",
                          "1 0 0 rg 0 0 1 1 re f");
    builder.page(mediaBox(75, 75), "/Pattern cs /P scn 0 0 75 75 re f 0 0 1 rg 0 0 37.5 75 re f",
                 "/Pattern << /P " + reference(tile) + " >>");
    EXPECT_EQ(OpenedPdf(builder.bytes()).draw(100, 100).at(20, 50), blue);
}

TEST_F(HostilePdf, WithAnEndlessImageIsGivenUp) {
    PdfBuilder builder;
    const int image = builder.addStream("/Type /XObject /Subtype /Image /Width 100000 /Height 2000000000 "
                                        "/BitsPerComponent 8 /ColorSpace /DeviceGray",
                                        "x");
    builder.page(mediaBox(75, 75), "q 75 0 0 75 0 0 cm /I Do Q",
                 "/XObject << /I " + reference(image) + " >>");
    EXPECT_FALSE(canBeDrawn(*OpenedPdf(builder.bytes())));
}

TEST_F(HostilePdf, WithMoreSavedStatesThanMemoryHoldsIsGivenUp) {
    std::string saves;
    for (int repeat = 0; repeat < 50'000; ++repeat)
        saves += "q ";
    EXPECT_FALSE(canBeDrawn(*OpenedPdf(PdfBuilder{}.page(mediaBox(75, 75), saves).bytes())));
}

} // namespace
