#include "DrawnPage.h"
#include "PdfBuilder.h"

#include <gtest/gtest.h>

#include <thread>

namespace {

std::string pageOfEverything() {
    PdfBuilder builder;
    const int form =
        builder.addStream("/Type /XObject /Subtype /Form /BBox [0 0 75 75] /Group << /S /Transparency >>",
                          "0 1 0 rg 5 5 20 20 re f");
    return builder
        .page(mediaBox(150, 75),
              "BT /F 20 Tf 10 40 Td (Threads) Tj ET /Half gs /X Do "
              "q 20 0 0 20 100 5 cm BI /W 2 /H 1 /BPC 8 /CS /RGB /F /AHx ID FF00000000FF> EI Q /Sh sh",
              "/Font << /F << /Type /Font /Subtype /Type1 /BaseFont /Times-Roman >> >> /ExtGState << /Half "
              "<< /ca 0.5 "
              ">> >> /XObject << /X " +
                  reference(form) +
                  " >> /Shading << /Sh << /ShadingType 2 /ColorSpace [/CalRGB << /WhitePoint [0.95 1 1.09] "
                  ">>] /Coords "
                  "[120 0 150 0] /Function << /FunctionType 2 /Domain [0 1] /C0 [1 0 0] /C1 [0 0 1] /N 1 >> "
                  ">> >>")
        .bytes();
}

TEST(PdfThreads, DocumentsOnSeveralThreadsAreIndependent) {
    constexpr std::size_t workers = 4;
    constexpr int rounds = 10;
    constexpr std::size_t bytes = 80'000; // of 200 x 100 pixels
    const TestSupport::TempFolder folder;
    const std::string path = folder.write("document.pdf", pageOfEverything()).string();
    std::vector<std::vector<std::uint8_t>> pictures(workers, std::vector<std::uint8_t>(bytes));
    std::vector<int> drawn(workers);
    {
        std::vector<std::jthread> threads;
        for (std::size_t worker = 0; worker < workers; ++worker)
            threads.emplace_back([&path, &picture = pictures[worker], &count = drawn[worker]] {
                for (int round = 0; round < rounds; ++round) {
                    const PageRasterLib::Pdf pdf(path);
                    count += pdf.Rasterize(200, 100, 1, picture.data(), 200 * 4) ? 1 : 0;
                }
            });
    }
    EXPECT_EQ(drawn, std::vector<int>(workers, rounds));
    for (const std::vector<std::uint8_t>& picture : pictures)
        EXPECT_EQ(picture, pictures.front());
    EXPECT_NE(pictures.front(), std::vector<std::uint8_t>(bytes, 255));
}

TEST(PdfThreads, OneDocumentMayMoveFromThreadToThread) {
    const OpenedPdf pdf(pageOfEverything());
    const DrawnPage here = pdf.draw(200, 100);
    DrawnPage there;
    std::jthread([&pdf, &there] { there = pdf.draw(200, 100); }).join();
    EXPECT_EQ(here.pixels, there.pixels);
}

} // namespace
