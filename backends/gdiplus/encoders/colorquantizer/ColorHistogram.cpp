#include "gdiplus/encoders/colorquantizer/ColorHistogram.h"

#include "gdiplus/encoders/PictureRows.h"
#include "gdiplus/encoders/colorquantizer/OpaqueOrClear.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <utility>

namespace GdiplusBackend {

namespace {

constexpr std::size_t mostBins = std::size_t{1} << 12;

ColorBin onePixel(Gdiplus::ARGB colour) {
    ColorBin bin;
    bin.count = 1;
    bin.sums = {1.0 * redOf(colour), 1.0 * greenOf(colour), 1.0 * blueOf(colour)};
    return bin;
}

/// A hash table of bins by their corner colour; gets coarser when it would get too full.
class BinTable {
public:
    BinTable()
        : slots(2 * mostBins, freeSlot) {}

    void addPixel(Gdiplus::ARGB colour) {
        addToBin(colour, onePixel(colour));
        if (bins.size() > mostBins)
            coarsen();
    }

    std::vector<ColorBin> take() { return std::move(bins); }

private:
    static constexpr std::uint32_t freeSlot = UINT32_MAX;

    void addToBin(Gdiplus::ARGB colour, const ColorBin& part) {
        const Gdiplus::ARGB corner = colour & cornerMask;
        std::size_t slot = (corner * 0x9E3779B1U) >> (32 - std::countr_zero(slots.size()));
        while (slots[slot] != freeSlot && corners[slots[slot]] != corner)
            slot = (slot + 1) % slots.size();
        if (slots[slot] == freeSlot) {
            slots[slot] = static_cast<std::uint32_t>(bins.size());
            bins.emplace_back();
            corners.push_back(corner);
        }
        bins[slots[slot]].add(part);
    }

    void coarsen() {
        cornerMask = (cornerMask << 1) & cornerMask & 0x00FEFEFE;
        const std::vector<ColorBin> fineBins = std::exchange(bins, {});
        const std::vector<Gdiplus::ARGB> fineCorners = std::exchange(corners, {});
        slots.assign(slots.size(), freeSlot);
        for (std::size_t i = 0; i < fineBins.size(); ++i)
            addToBin(fineCorners[i], fineBins[i]);
        if (bins.size() > mostBins)
            coarsen();
    }

    Gdiplus::ARGB cornerMask = 0x00FFFFFF;
    std::vector<std::uint32_t> slots; // indices into the other two
    std::vector<ColorBin> bins;
    std::vector<Gdiplus::ARGB> corners;
};

} // namespace

ColorHistogram countColors(const ConstPixelView& picture) {
    BinTable table;
    bool hasClearPixels = false;
    for (int y = 0; y < picture.height; ++y)
        visitRow(picture, y, [&](Gdiplus::ARGB colour) {
            if (colour == clearColor)
                hasClearPixels = true;
            else
                table.addPixel(colour);
        });
    return {table.take(), hasClearPixels};
}

} // namespace GdiplusBackend
