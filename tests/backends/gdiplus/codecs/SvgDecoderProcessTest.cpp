#include "backends/gdiplus/codecs/DecodedPicture.h"
#include "backends/svg/HostileSvg.h"
#include "gdiplus/codecs/StraightAlpha.h"
#include "svg/CairoOwned.h"
#include "svg/SvgPainter.h"

#include <gtest/gtest.h>

#include <string>

using namespace HostileSvg;

namespace GdiplusBackend {

namespace {

const std::string disc = "<circle cx='100' cy='50' r='40' fill='#f00' fill-opacity='0.5' stroke='#00f'/>";
/// Text is never plain, and this one shows nothing.
const std::string notPlain = "<text></text>";

Bytes bytesOf(const std::string& text) {
    const auto bytes = std::as_bytes(std::span(text));
    return {bytes.begin(), bytes.end()};
}

Gdiplus::Status outcomeOf(const std::string& document) {
    return statusOf(bytesOf(document));
}

/// Drawn by librsvg in this process, as rows that a decoder gives.
CollectRows drawnHere(const std::string& document, int width, int height) {
    const SvgBackend::CairoOwned<cairo_surface_t> surface(
        cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height));
    const SvgBackend::CairoOwned<cairo_t> context(cairo_create(surface.get()));
    EXPECT_TRUE(SvgBackend::paintHere(context.get(), {document}, {{0, 0, width * 1.0, height * 1.0}}));
    cairo_surface_flush(surface.get());
    const auto* pixels = reinterpret_cast<const std::byte*>(cairo_image_surface_get_data(surface.get()));
    CollectRows rows(RowLayout::Bgra32);
    for (int y = 0; y < height; ++y) {
        const std::byte* start = pixels + std::ptrdiff_t{cairo_image_surface_get_stride(surface.get())} * y;
        std::vector<std::byte> row(start, start + std::ptrdiff_t{4} * width);
        unpremultiply(row);
        rows.putRow(row);
    }
    return rows;
}

} // namespace

TEST(SvgDecoderProcess, DrawsTheSamePixelsAsThisProcess) {
    for (const std::string& document :
         {svg(disc + "<text x='20' y='50' font-size='30'>Storm</text>"),
          svg("<filter id='f'><feGaussianBlur stdDeviation='3'/></filter><g filter='url(#f)'>" + disc +
              "</g>"),
          svg("<g id='a'>" + disc + "</g><use href='#a' x='30' transform='scale(0.5)'/>"),
          std::string("<svg xmlns='http://www.w3.org/2000/svg' width='31.5' height='70'>" + disc + notPlain +
                      "</svg>")})
        for (const int reduction : {1, 4}) {
            const auto picture = decodedPicture(bytesOf(document), reduction);
            EXPECT_TRUE(picture.rows == drawnHere(document, reducedLength(picture.facts.width, reduction),
                                                  reducedLength(picture.facts.height, reduction)))
                << document << " / " << reduction;
        }
}

TEST(SvgDecoderProcess, AFileThatTakesTooLongIsDamageAndSaysWhy) {
    const auto decoder = openBytes(bytesOf(endless()));
    ASSERT_TRUE(decoder);
    const TimeLimit limit("300");
    const auto rows = decodeRows(**decoder);
    ASSERT_FALSE(rows);
    EXPECT_EQ(rows.error().status, Gdiplus::GenericError);
    EXPECT_EQ(rows.error().message,
              "SVG: it takes longer than the time limit (KESTO_SVG_TIME_LIMIT_MS) allows");
}

TEST(SvgDecoderProcess, AFileThatTookTooLongIsNotTriedAgain) {
    const std::string document = endless() + "<!-- once -->";
    {
        const auto decoder = openBytes(bytesOf(document));
        ASSERT_TRUE(decoder);
        const TimeLimit limit("300");
        ASSERT_FALSE(decodeRows(**decoder));
    }
    const TimeLimit limit("1000000000");
    EXPECT_EQ(outcomeOf(document), Gdiplus::GenericError) << "else this would not end";
}

TEST(SvgDecoderProcess, AFileThatLibrsvgDiesOfEndsNothingElse) {
    EXPECT_EQ(outcomeOf(deadly()), Gdiplus::GenericError);
    EXPECT_EQ(outcomeOf(svg(disc + notPlain)), Gdiplus::Ok);
}

TEST(SvgDecoderProcess, MessagesOfLibrsvgComeFromThere) {
    const std::string broken = "<svg xmlns='http://www.w3.org/2000/svg'><text></svg>";
    const auto decoder = openBytes(bytesOf(broken));
    ASSERT_FALSE(decoder);
    EXPECT_EQ(decoder.error().message, SvgBackend::measureHere(broken).error().message);
}

TEST(SvgDecoderProcess, LeavesNothingBehind) {
    EXPECT_EQ(outcomeOf(svg(disc + notPlain)), Gdiplus::Ok);
    const std::ptrdiff_t before = openFiles();
    EXPECT_EQ(outcomeOf(svg(disc + notPlain)), Gdiplus::Ok);
    EXPECT_NE(outcomeOf("<svg>" + notPlain), Gdiplus::Ok);
    EXPECT_NE(outcomeOf(deadly() + "<!-- again -->"), Gdiplus::Ok);
    const auto decoder = openBytes(bytesOf(endless() + "<!-- again -->"));
    ASSERT_TRUE(decoder);
    const TimeLimit limit("300");
    EXPECT_FALSE(decodeRows(**decoder));
    EXPECT_EQ(openFiles(), before);
    EXPECT_FALSE(hasChildren());
}

} // namespace GdiplusBackend
