#pragma once

#include "gdiplus/codecs/PictureDecoder.h"
#include "gdiplus/codecs/pngdecoder/PngHeader.h"

namespace GdiplusBackend {

/// How the pixels of one PNG file become rows of a layout.
class PngSamples {
public:
    explicit PngSamples(const PngHeader& header);

    RowLayout layout() const { return target; }
    bool hasAlpha() const { return alpha; }
    /// For the index layouts: as many entries as an index can name.
    std::vector<Gdiplus::ARGB> palette() const;

    /// Turns R, G, B into B, G, R in a row of the file, where such a row needs nothing else to be given out.
    /// Filters work on each channel for itself, so this may come before they are undone.
    void reorder(std::span<std::byte> row) const;
    /// Whether a row of the file, reordered, is a row of the layout.
    bool givesRowsAsTheyAre() const { return conversion == Conversion::None; }
    /// Otherwise writes `pixels` pixels of a row of the file to `out`.
    void convert(std::span<const std::byte> row, std::uint32_t pixels, std::span<std::byte> out) const;

private:
    /// `Table`: by a table from samples to colours. `Channels`: sample by sample, to 8 bits.
    enum class Conversion { None, Table, Channels };

    template <typename Sample>
    void convertChannels(std::span<const std::byte> row, std::uint32_t pixels,
                         std::span<std::byte> out) const;
    void convertByTable(std::span<const std::byte> row, std::uint32_t pixels, std::span<std::byte> out) const;
    void fillTable(const PngHeader& header);

    PngColour colour;
    int bitDepth;
    bool alpha;
    RowLayout target;
    Conversion conversion;
    std::vector<Gdiplus::ARGB> table;       ///< for samples of up to 8 bits that stand for colours
    std::vector<std::uint16_t> transparent; ///< grey or R, G, B of the pixels that do not show; may be empty
};

} // namespace GdiplusBackend
