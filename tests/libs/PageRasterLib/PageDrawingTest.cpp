#include "DrawnPage.h"
#include "PdfBuilder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

namespace {

// 75 points are 100 pixels. The origin of a page is its lower left corner.
constexpr const char* square = "/MediaBox [0 0 75 75]";
constexpr const char* redAtTheTopLeft = "1 0 0 rg 0 37.5 37.5 37.5 re f";

DrawnPage draw(const std::string& pageEntries, const std::string& content,
               const std::string& resources = "") {
    return OpenedPdf(PdfBuilder{}.page(pageEntries, content, resources).bytes()).drawAtDefaultSize();
}

TEST(PageDrawing, PaperIsOpaqueWhite) {
    const DrawnPage page = draw(square, "");
    EXPECT_TRUE(std::all_of(page.pixels.begin(), page.pixels.end(), [](int byte) { return byte == 255; }));
}

TEST(PageDrawing, BytesAreBlueGreenRedAlpha) {
    EXPECT_EQ(draw(square, "1 0.2 0 rg 0 0 75 75 re f").at(50, 50), (Bgra{0, 51, 255, 255}));
}

TEST(PageDrawing, TheFirstRowIsTheTopOfThePage) {
    const DrawnPage page = draw(square, redAtTheTopLeft);
    EXPECT_EQ(page.at(0, 0), red);
    EXPECT_EQ(page.at(49, 49), red);
    EXPECT_EQ(page.at(50, 49), white);
    EXPECT_EQ(page.at(49, 50), white);
    EXPECT_EQ(page.at(0, 99), white);
}

TEST(PageDrawing, ColoursStandWhereTheyAreDrawn) {
    const DrawnPage page = draw(mediaBox(150, 75), "0 1 0 rg 0 0 75 37.5 re f 0 0 1 rg 75 37.5 75 37.5 re f");
    EXPECT_EQ(page.at(10, 90), green);
    EXPECT_EQ(page.at(190, 10), blue);
    EXPECT_EQ(page.at(10, 10), white);
    EXPECT_EQ(page.at(190, 90), white);
}

TEST(PageDrawing, APageTurnedByAQuarterIsTurnedClockwise) {
    const DrawnPage page = draw(mediaBox(150, 75) + " /Rotate 90", "1 0 0 rg 0 37.5 37.5 37.5 re f");
    EXPECT_EQ(page.at(90, 10), red); // what was at the top left
    EXPECT_EQ(page.at(10, 10), white);
    EXPECT_EQ(page.at(90, 190), white);
}

TEST(PageDrawing, APageTurnedByAHalfIsUpsideDown) {
    const DrawnPage page = draw(std::string(square) + " /Rotate 180", redAtTheTopLeft);
    EXPECT_EQ(page.at(90, 90), red);
    EXPECT_EQ(page.at(10, 10), white);
}

TEST(PageDrawing, APageTurnedByThreeQuartersIsTurnedAnticlockwise) {
    const DrawnPage page = draw(mediaBox(150, 75) + " /Rotate 270", "1 0 0 rg 0 37.5 37.5 37.5 re f");
    EXPECT_EQ(page.at(10, 190), red);
    EXPECT_EQ(page.at(10, 10), white);
    EXPECT_EQ(page.at(90, 190), white);
}

TEST(PageDrawing, ShowsTheCropBoxAlone) {
    const DrawnPage page = draw("/MediaBox [0 0 300 300] /CropBox [75 75 150 150]",
                                "1 0 0 rg 0 0 300 300 re f 0 1 0 rg 75 75 37.5 37.5 re f");
    EXPECT_EQ(page.at(10, 90), green);
    EXPECT_EQ(page.at(90, 10), red);
}

TEST(PageDrawing, ShowsTheMediaBoxWhereTheCropBoxLeavesNothing) {
    EXPECT_EQ(draw("/MediaBox [0 0 75 75] /CropBox [200 200 200 200]", redAtTheTopLeft).at(10, 10), red);
}

TEST(PageDrawing, FillsTheSizeThatIsAskedFor) {
    const OpenedPdf pdf(PdfBuilder{}.page(mediaBox(75, 75), "0 0 1 rg 0 0 75 75 re f").bytes());
    const DrawnPage page = pdf.draw(301, 7);
    EXPECT_EQ(page.at(0, 0), blue);
    EXPECT_EQ(page.at(300, 0), blue);
    EXPECT_EQ(page.at(0, 6), blue);
    EXPECT_EQ(page.at(300, 6), blue);
}

TEST(PageDrawing, ScalesEachDirectionByItself) {
    const OpenedPdf pdf(PdfBuilder{}.page(square, redAtTheTopLeft).bytes());
    const DrawnPage page = pdf.draw(40, 200);
    EXPECT_EQ(page.at(19, 99), red);
    EXPECT_EQ(page.at(20, 99), white);
    EXPECT_EQ(page.at(19, 100), white);
}

TEST(PageDrawing, ScalesATurnedPageInTheDirectionsOfTheResult) {
    const OpenedPdf pdf(
        PdfBuilder{}.page(mediaBox(150, 75) + " /Rotate 90", "1 0 0 rg 0 37.5 75 37.5 re f").bytes());
    const DrawnPage page = pdf.draw(20, 300);
    EXPECT_EQ(page.at(19, 149), red);
    EXPECT_EQ(page.at(19, 151), white);
    EXPECT_EQ(page.at(9, 10), white);
}

TEST(PageDrawing, KeepsTheUserUnitOutOfTheScale) {
    const DrawnPage page = draw(std::string(square) + " /UserUnit 2", redAtTheTopLeft);
    ASSERT_EQ(page.width, 200);
    EXPECT_EQ(page.at(99, 99), red);
    EXPECT_EQ(page.at(101, 101), white);
}

TEST(PageDrawing, LeavesTheBytesBetweenRowsAlone) {
    const OpenedPdf pdf(PdfBuilder{}.page(square, redAtTheTopLeft).bytes());
    constexpr int stride = 52; // of which 12 bytes are between rows
    std::vector<std::uint8_t> pixels(520, 0x5A);
    ASSERT_TRUE(pdf->Rasterize(10, 10, 1, pixels.data(), stride));
    for (std::size_t row = 0; row < 10; ++row)
        for (std::size_t byte = 40; byte < stride; ++byte)
            ASSERT_EQ(pixels[row * stride + byte], 0x5A) << row << ", " << byte;
    EXPECT_EQ(pixels[9 * stride + 39], 255);
}

TEST(PageDrawing, GoesUpwardsInMemoryWithANegativeStride) {
    const OpenedPdf pdf(PdfBuilder{}.page(square, redAtTheTopLeft).bytes());
    std::vector<std::uint8_t> pixels(400);
    ASSERT_TRUE(pdf->Rasterize(10, 10, 1, &pixels[360], -40));
    EXPECT_EQ(pixels[360], 0); // blue of the top row
    EXPECT_EQ(pixels[0], 255); // and of the bottom row
}

TEST(PageDrawing, LaysTransparencyOnThePaper) {
    const DrawnPage page =
        draw(square, "/Half gs 1 0 0 rg 0 0 75 75 re f", "/ExtGState << /Half << /ca 0.5 >> >>");
    const Bgra pixel = page.at(50, 50);
    EXPECT_EQ(pixel.red, 255);
    EXPECT_NEAR(pixel.green, 127, 1);
    EXPECT_NEAR(pixel.blue, 127, 1);
    EXPECT_EQ(pixel.alpha, 255);
}

TEST(PageDrawing, MultipliesBlendedColours) {
    const DrawnPage page = draw(square, "1 1 0 rg 0 0 75 75 re f /Mul gs 0 1 1 rg 0 0 75 75 re f",
                                "/ExtGState << /Mul << /BM /Multiply >> >>");
    EXPECT_EQ(page.at(50, 50), green);
}

TEST(PageDrawing, SmoothsSlantedEdges) {
    const DrawnPage page = draw(square, "0 0 m 75 0 l 75 20 l f");
    const bool hasGrey =
        std::any_of(page.pixels.begin(), page.pixels.end(), [](int byte) { return byte > 40 && byte < 215; });
    EXPECT_TRUE(hasGrey);
}

TEST(PageDrawing, DrawsTextInAStandardFontThatIsNotEmbedded) {
    const DrawnPage page = draw(mediaBox(150, 75), "BT /F 60 Tf 10 20 Td (HH) Tj ET",
                                "/Font << /F << /Type /Font /Subtype /Type1 /BaseFont /Helvetica >> >>");
    int ink = 0;
    for (int x = 0; x < page.width; ++x)
        ink += page.at(x, 45) == black;
    EXPECT_GT(ink, 10);
    EXPECT_EQ(page.at(5, 45), white);
}

TEST(PageDrawing, DrawsAnImage) {
    // Two pixels, red and blue.
    const DrawnPage page =
        draw(square, "q 75 0 0 75 0 0 cm BI /W 2 /H 1 /BPC 8 /CS /RGB /F /AHx ID FF00000000FF> EI Q");
    EXPECT_EQ(page.at(20, 50), red);
    EXPECT_EQ(page.at(80, 50), blue);
}

TEST(PageDrawing, ShowsAnnotations) {
    PdfBuilder builder;
    const int look =
        builder.addStream("/Type /XObject /Subtype /Form /BBox [0 0 75 75]", "0 1 0 rg 0 0 75 75 re f");
    builder.page(std::string(square) +
                 " /Annots [<< /Type /Annot /Subtype /Square /F 4 /Rect [0 0 75 75] /AP << /N " +
                 reference(look) + " >> >>]");
    EXPECT_EQ(OpenedPdf(builder.bytes()).drawAtDefaultSize().at(50, 50), green);
}

TEST(PageDrawing, JoinsTheBandsOfALargePageWithoutASeam) {
    // 8000 pixels a row make bands of 2000 rows.
    const OpenedPdf pdf(PdfBuilder{}.page(mediaBox(100, 100), "1 0 0 rg 0 0 100 50 re f").bytes());
    const DrawnPage page = pdf.draw(8000, 4100);
    EXPECT_EQ(page.at(7999, 1999), white);
    EXPECT_EQ(page.at(7999, 2049), white);
    EXPECT_EQ(page.at(0, 2050), red);
    EXPECT_EQ(page.at(7999, 4099), red);
}

TEST(PageDrawing, DrawsThePageOfThatNumber) {
    const OpenedPdf pdf(
        PdfBuilder{}.page(square, "1 0 0 rg 0 0 75 75 re f").page(square, "0 0 1 rg 0 0 75 75 re f").bytes());
    EXPECT_EQ(pdf.draw(10, 10, 2).at(5, 5), blue);
    EXPECT_EQ(pdf.draw(10, 10, 1).at(5, 5), red);
}

TEST(PageDrawing, FailsForPagesThatAreNotThere) {
    const OpenedPdf pdf(PdfBuilder{}.page(square).bytes());
    std::vector<std::uint8_t> pixels(400);
    for (const int page : {0, -1, 2, std::numeric_limits<int>::min()})
        EXPECT_FALSE(pdf->Rasterize(10, 10, page, pixels.data(), 40)) << page;
}

TEST(PageDrawing, FailsForASizeOrABufferThatCanNotBe) {
    const OpenedPdf pdf(PdfBuilder{}.page(square).bytes());
    std::vector<std::uint8_t> pixels(400);
    EXPECT_FALSE(pdf->Rasterize(0, 10, 1, pixels.data(), 40));
    EXPECT_FALSE(pdf->Rasterize(10, -10, 1, pixels.data(), 40));
    EXPECT_FALSE(pdf->Rasterize(std::numeric_limits<int>::max(), 1, 1, pixels.data(), 40));
    EXPECT_FALSE(pdf->Rasterize(10, 10, 1, pixels.data(), 39));
    EXPECT_FALSE(pdf->Rasterize(10, 10, 1, nullptr, 40));
}

} // namespace
