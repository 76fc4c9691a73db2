#include "gdiplus/encoders/ColorQuantizer.h"

#include "gdiplus/encoders/PictureRows.h"
#include "gdiplus/encoders/colorquantizer/ColorHistogram.h"
#include "gdiplus/encoders/colorquantizer/DistinctColors.h"
#include "gdiplus/encoders/colorquantizer/NearestColor.h"
#include "gdiplus/encoders/colorquantizer/OpaqueOrClear.h"
#include "gdiplus/encoders/colorquantizer/PaletteFitter.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

namespace GdiplusBackend {

class ColorQuantizer::Mapping {
public:
    virtual ~Mapping() = default;

    virtual std::span<const Gdiplus::ARGB> palette() const = 0;
    virtual void mapRow(int y, std::span<std::uint8_t> indices) = 0;

    void mapNextRow(std::span<std::uint8_t> indices) { mapRow(nextY++, indices); }

private:
    int nextY = 0;
};

namespace {

constexpr std::size_t mostColours = DistinctColors::most;

class ExactMapping : public ColorQuantizer::Mapping {
public:
    ExactMapping(const ConstPixelView& view, DistinctColors&& distinctColours)
        : picture(view)
        , colours(std::move(distinctColours)) {}

    std::span<const Gdiplus::ARGB> palette() const override { return colours.colours(); }

    void mapRow(int y, std::span<std::uint8_t> indices) override {
        std::size_t x = 0;
        visitRow(picture, y, [&](Gdiplus::ARGB colour) { indices[x++] = colours.indexOf(colour); });
    }

private:
    ConstPixelView picture;
    DistinctColors colours;
};

/// Floyd and Steinberg's weights, in sixteenths; odd rows run from right to left and mirror them:
///
///         *  7
///      3  5  1
class DiffusingMapping : public ColorQuantizer::Mapping {
public:
    DiffusingMapping(const ConstPixelView& view, std::vector<Gdiplus::ARGB>&& colours)
        : picture(view)
        , entries(std::move(colours))
        , nearest(opaqueEntries())
        , row(static_cast<std::size_t>(view.width))
        , errorsHere(row.size() + 2)
        , errorsBelow(row.size() + 2) {}

    std::span<const Gdiplus::ARGB> palette() const override { return entries; }

    void mapRow(int y, std::span<std::uint8_t> indices) override {
        std::size_t filled = 0;
        visitRow(picture, y, [&](Gdiplus::ARGB colour) { row[filled++] = colour; });
        const int step = y % 2 == 0 ? 1 : -1;
        int x = step > 0 ? 0 : picture.width - 1;
        for (; x >= 0 && x < picture.width; x += step)
            indices[static_cast<std::size_t>(x)] = mapPixel(x, step);
        std::swap(errorsHere, errorsBelow);
        std::ranges::fill(errorsBelow, Error{});
    }

private:
    using Error = std::array<int, 3>;

    /// The transparent entry, if there is one, is the last.
    std::span<const Gdiplus::ARGB> opaqueEntries() const {
        const bool hasClear = entries.back() == clearColor;
        return std::span(entries).first(entries.size() - (hasClear ? 1 : 0));
    }

    std::uint8_t mapPixel(int x, int step) {
        const Gdiplus::ARGB colour = row[static_cast<std::size_t>(x)];
        if (colour == clearColor)
            return static_cast<std::uint8_t>(entries.size() - 1);
        const Error& error = at(errorsHere, x);
        const Error wanted = {wantedLevel(redOf(colour), error[0]), wantedLevel(greenOf(colour), error[1]),
                              wantedLevel(blueOf(colour), error[2])};
        const std::uint8_t index = nearest.indexFor(wanted[0], wanted[1], wanted[2]);
        const Gdiplus::ARGB chosen = entries[index];
        spread({wanted[0] - redOf(chosen), wanted[1] - greenOf(chosen), wanted[2] - blueOf(chosen)}, x, step);
        return index;
    }

    static int wantedLevel(int level, int sixteenths) {
        return std::clamp(level + ((sixteenths + 8) >> 4), 0, 255);
    }

    void spread(const Error& error, int x, int step) {
        for (std::size_t channel = 0; channel < error.size(); ++channel) {
            at(errorsHere, x + step)[channel] += 7 * error[channel];
            at(errorsBelow, x - step)[channel] += 3 * error[channel];
            at(errorsBelow, x)[channel] += 5 * error[channel];
            at(errorsBelow, x + step)[channel] += error[channel];
        }
    }

    /// `x` may lie one pixel outside on either side.
    static Error& at(std::vector<Error>& errors, int x) { return errors[static_cast<std::size_t>(x) + 1]; }

    ConstPixelView picture;
    std::vector<Gdiplus::ARGB> entries;
    RememberedNearestColor nearest;
    std::vector<Gdiplus::ARGB> row;
    std::vector<Error> errorsHere;
    std::vector<Error> errorsBelow;
};

std::vector<Gdiplus::ARGB> fittedPalette(const ConstPixelView& picture) {
    const ColorHistogram histogram = countColors(picture);
    std::vector<Gdiplus::ARGB> palette =
        fitPalette(histogram.bins, mostColours - (histogram.hasClearPixels ? 1 : 0));
    if (histogram.hasClearPixels)
        palette.push_back(clearColor);
    return palette;
}

} // namespace

ColorQuantizer::ColorQuantizer(const ConstPixelView& picture) {
    if (auto distinct = DistinctColors::of(picture))
        mapping = std::make_unique<ExactMapping>(picture, std::move(*distinct));
    else
        mapping = std::make_unique<DiffusingMapping>(picture, fittedPalette(picture));
}

ColorQuantizer::~ColorQuantizer() = default;

std::span<const Gdiplus::ARGB> ColorQuantizer::palette() const {
    return mapping->palette();
}

std::optional<std::uint8_t> ColorQuantizer::transparentIndex() const {
    const auto entries = mapping->palette();
    const auto clear = std::ranges::find(entries, clearColor);
    if (clear == entries.end())
        return std::nullopt;
    return static_cast<std::uint8_t>(clear - entries.begin());
}

void ColorQuantizer::nextRow(std::span<std::uint8_t> indices) {
    mapping->mapNextRow(indices);
}

} // namespace GdiplusBackend
