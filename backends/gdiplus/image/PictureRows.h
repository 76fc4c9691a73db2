#pragma once

#include "gdiplus/codecs/PictureDecoder.h"
#include "gdiplus/color/ColorTransform.h"
#include "gdiplus/pixels/PixelView.h"
#include "gdiplus/scaling/BoxReducer.h"

#include <optional>
#include <span>
#include <vector>

namespace GdiplusBackend {

/// Puts decoded rows into a picture of the same size, with their colours managed, converted to its format.
class FullSizeRows : public RowSink {
public:
    /// `palette` is that of indexed rows. `transform` may be null. Both and the target outlive the sink.
    FullSizeRows(RowLayout rowLayout, std::span<const Gdiplus::ARGB> rowPalette,
                 const ColorTransform* transform, const PixelView& picture);

    void putRow(std::span<const std::byte> row) override;

private:
    RowLayout layout;
    std::span<const Gdiplus::ARGB> palette;
    const ColorTransform* colors;
    PixelView target;
    std::vector<std::byte> managed;
    int nextRow = 0;
};

/// Averages decoded rows in blocks and puts the result, premultiplied, into a smaller picture of format
/// `32bppPARGB`, or `32bppRGB` for rows of which nothing is transparent. What is averaged are colours, not
/// inks or indices; but where colours are managed, that is done behind the averaging, with fewer of them.
class ShrunkRows : public RowSink {
public:
    struct Source {
        RowLayout layout;
        std::span<const Gdiplus::ARGB> palette;
        int width; ///< of the rows that come in
        int height;
        int boxX;
        int boxY;
    };

    /// `transform` may be null. It, the palette and the target outlive the sink.
    ShrunkRows(const Source& rows, const ColorTransform* transform, const PixelView& picture);
    ShrunkRows(const ShrunkRows&) = delete; // the reducer calls back
    ShrunkRows& operator=(const ShrunkRows&) = delete;

    void putRow(std::span<const std::byte> row) override;

private:
    std::span<const std::byte> averageable(std::span<const std::byte> row);
    void store(std::span<const std::byte> row);
    void storeRgb(std::span<const std::byte> row, std::byte* out);
    void storePremultiplied(std::span<const std::byte> row, std::byte* out) const;

    Source source;
    const ColorTransform* colors;
    PixelView target;
    std::vector<std::byte> expanded;
    std::optional<BoxReducer> reducer;
    int nextRow = 0;
};

} // namespace GdiplusBackend
