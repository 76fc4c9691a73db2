#pragma once

#include "platform/PageRasterLib.h"
#include "support/TempFolder.h"

#include <cstdint>
#include <ostream>
#include <stdexcept>
#include <string>
#include <vector>

/// As it lies in memory.
struct Bgra {
    int blue = 0;
    int green = 0;
    int red = 0;
    int alpha = 255;

    friend bool operator==(const Bgra&, const Bgra&) = default;
    friend std::ostream& operator<<(std::ostream& out, const Bgra& pixel) {
        return out << "B" << pixel.blue << " G" << pixel.green << " R" << pixel.red << " A" << pixel.alpha;
    }
};

constexpr Bgra white{255, 255, 255};
constexpr Bgra black{0, 0, 0};
constexpr Bgra red{0, 0, 255};
constexpr Bgra green{0, 255, 0};
constexpr Bgra blue{255, 0, 0};

struct DrawnPage {
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> pixels;

    Bgra at(int x, int y) const {
        const std::size_t place =
            (static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x)) * 4;
        return {pixels.at(place), pixels.at(place + 1), pixels.at(place + 2), pixels.at(place + 3)};
    }
};

/// A document in a file of its own, opened.
class OpenedPdf {
public:
    explicit OpenedPdf(const std::string& bytes)
        : pdf(folder.write("document.pdf", bytes).string()) {}

    const PageRasterLib::Pdf& operator*() const { return pdf; }
    const PageRasterLib::Pdf* operator->() const { return &pdf; }

    DrawnPage draw(int width, int height, int page = 1) const {
        DrawnPage drawn{width, height,
                        std::vector<std::uint8_t>(static_cast<std::size_t>(width * height * 4))};
        if (!pdf.Rasterize(width, height, page, drawn.pixels.data(), width * 4))
            throw std::runtime_error("the page was not drawn");
        return drawn;
    }
    DrawnPage drawAtDefaultSize(int page = 1) const {
        int width = 0;
        int height = 0;
        if (!pdf.DefaultDimensions(page, width, height))
            throw std::runtime_error("the page has no size");
        return draw(width, height, page);
    }

private:
    TestSupport::TempFolder folder;
    PageRasterLib::Pdf pdf;
};
