#pragma once

#include "gdiplus/scaling/Scaler.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <functional>
#include <random>
#include <tuple>
#include <vector>

namespace GdiplusBackend::ScalingTest {

using Pixel = std::array<int, 4>; ///< B, G, R, A

enum class RowOrder { TopDown, BottomUp };

/// A picture in memory of its own, with padding behind each row, which `paddingIsUntouched` watches.
class Picture {
public:
    Picture(int columns, int rows, RowOrder rowOrder = RowOrder::TopDown)
        : width(columns)
        , height(rows)
        , order(rowOrder)
        , bytes(static_cast<std::size_t>(stride()) * static_cast<std::size_t>(rows), paddingByte) {}

    static Picture filled(int columns, int rows, const Pixel& pixel) {
        return painted(columns, rows, [pixel](int, int) { return pixel; });
    }

    static Picture painted(int columns, int rows, const std::function<Pixel(int x, int y)>& paint,
                           RowOrder rowOrder = RowOrder::TopDown) {
        Picture picture(columns, rows, rowOrder);
        for (int y = 0; y < rows; ++y)
            for (int x = 0; x < columns; ++x)
                picture.set(x, y, paint(x, y));
        return picture;
    }

    void set(int x, int y, const Pixel& pixel) {
        std::byte* row = view().row(y) + std::ptrdiff_t{x} * 4;
        for (std::size_t sample = 0; sample < pixel.size(); ++sample)
            row[sample] = static_cast<std::byte>(pixel[sample]);
    }

    Pixel at(int x, int y) const {
        Pixel pixel;
        for (std::size_t sample = 0; sample < pixel.size(); ++sample)
            pixel[sample] =
                std::to_integer<int>(constView().row(y)[static_cast<std::size_t>(x) * 4 + sample]);
        return pixel;
    }

    PixelView view() {
        if (order == RowOrder::BottomUp)
            return {bytes.data() + stride() * (height - 1), -stride(), width, height, PixelFormat32bppPARGB};
        return {bytes.data(), stride(), width, height, PixelFormat32bppPARGB};
    }
    ConstPixelView constView() const { return const_cast<Picture*>(this)->view(); }

    bool paddingIsUntouched() const {
        for (int y = 0; y < height; ++y)
            for (std::ptrdiff_t byte = std::ptrdiff_t{width} * 4; byte < stride(); ++byte)
                if (constView().row(y)[byte] != paddingByte)
                    return false;
        return true;
    }

    int width;
    int height;

private:
    static constexpr std::byte paddingByte{0x5A};

    std::ptrdiff_t stride() const { return std::ptrdiff_t{width} * 4 + 12; }

    RowOrder order;
    std::vector<std::byte> bytes;
};

inline Region whole(const Picture& picture) {
    return {0, 0, static_cast<double>(picture.width), static_cast<double>(picture.height)};
}

inline Picture scaled(const Picture& source, const Region& region, int width, int height, Kernel kernel,
                      Opacity opacity) {
    Picture target(width, height);
    const Result<void> result = scale({source.constView(), region, kernel, opacity}, target.view());
    EXPECT_TRUE(result.has_value()) << (result ? "" : result.error().message);
    EXPECT_TRUE(target.paddingIsUntouched());
    return target;
}

inline Picture scaled(const Picture& source, int width, int height, Kernel kernel, Opacity opacity) {
    return scaled(source, whole(source), width, height, kernel, opacity);
}

/// What `scale` promises, computed in double precision straight from the definition.
Picture referenceScaled(const Picture& source, const Region& region, int width, int height, Kernel kernel,
                        Opacity opacity);

/// Random colours, premultiplied, a third of the pixels wholly transparent.
inline Picture noise(int width, int height) {
    std::mt19937 random(static_cast<unsigned>(width * 1000 + height));
    return Picture::painted(width, height, [&random](int, int) {
        const int alpha = random() % 3 == 0 ? 0 : static_cast<int>(random() % 256);
        const auto colour = [&] { return static_cast<int>(random() % (static_cast<unsigned>(alpha) + 1)); };
        return Pixel{colour(), colour(), colour(), alpha};
    });
}

inline Pixel gray(int value) {
    return {value, value, value, 255};
}

inline int worstDifference(const Picture& one, const Picture& other) {
    int worst = one.width == other.width && one.height == other.height ? 0 : 256;
    for (int y = 0; worst < 256 && y < one.height; ++y)
        for (int x = 0; x < one.width; ++x)
            for (std::size_t sample = 0; sample < 4; ++sample)
                worst = std::max(worst, std::abs(one.at(x, y)[sample] - other.at(x, y)[sample]));
    return worst;
}

struct Spot {
    double x = 0;
    double y = 0;
};

/// The centre of gravity of all that differs from the background.
inline Spot spotOn(const Picture& picture, int background) {
    double sum = 0;
    Spot spot;
    for (int y = 0; y < picture.height; ++y)
        for (int x = 0; x < picture.width; ++x) {
            const int value = picture.at(x, y)[0] - background;
            sum += value;
            spot.x += value * (x + 0.5);
            spot.y += value * (y + 0.5);
        }
    EXPECT_GT(sum, 0);
    return {spot.x / sum, spot.y / sum};
}

/// A test for both filtering kernels and both opacities.
class FilteredScale : public testing::TestWithParam<std::tuple<Kernel, Opacity>> {
protected:
    Kernel kernel() const { return std::get<0>(GetParam()); }
    Opacity opacity() const { return std::get<1>(GetParam()); }
};

inline auto everyFilter() {
    return testing::Combine(testing::Values(Kernel::Linear, Kernel::Cubic),
                            testing::Values(Opacity::Opaque, Opacity::Transparent));
}

inline std::string filterName(const testing::TestParamInfo<std::tuple<Kernel, Opacity>>& info) {
    return std::string(std::get<0>(info.param) == Kernel::Linear ? "Linear" : "Cubic") +
           (std::get<1>(info.param) == Opacity::Opaque ? "Opaque" : "Transparent");
}

} // namespace GdiplusBackend::ScalingTest
