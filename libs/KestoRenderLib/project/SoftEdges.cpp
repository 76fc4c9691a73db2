#include "KestoRenderLib/project/SoftEdges.h"

#include "KestoRenderLib/project/PixelRows.h"

#include <cmath>
#include <cstddef>
#include <cstring>

namespace KestoRenderLib {

namespace {

/// One end of a box in one direction: the pixel that is covered in part, its neighbour inside, and the part.
struct PartlyCovered {
    int pixel;
    int inner;
    double part;
};

PartlyCovered atStart(double edge) {
    const double pixel = std::floor(edge);
    return {static_cast<int>(pixel), static_cast<int>(pixel) + 1, pixel + 1 - edge};
}

PartlyCovered atEnd(double edge) {
    const double pixel = std::ceil(edge) - 1;
    return {static_cast<int>(pixel), static_cast<int>(pixel) - 1, edge - pixel};
}

/// With room for the rounding of whoever drew; copying over a drawn pixel does no harm.
bool isLeftOut(const PartlyCovered& end) {
    return end.part <= 0.51;
}

bool isInside(int pixel, int first, int last) {
    return pixel >= first && pixel < last;
}

void copyColumn(MetaBitmap& layer, int from, int to) {
    for (int row = 0; row < layer.GetHeight(); ++row) {
        unsigned char* pixels = layer.GetPixels() + static_cast<std::ptrdiff_t>(layer.GetStride()) * row;
        std::memcpy(pixels + static_cast<std::ptrdiff_t>(to) * 4,
                    pixels + static_cast<std::ptrdiff_t>(from) * 4, 4);
    }
}

void copyRow(MetaBitmap& layer, int from, int to) {
    const auto row = [&](int y) {
        return layer.GetPixels() + static_cast<std::ptrdiff_t>(layer.GetStride()) * y;
    };
    std::memcpy(row(to), row(from), static_cast<std::size_t>(layer.GetWidth()) * 4);
}

void softenColumn(MetaBitmap& layer, const Rect& area, const PartlyCovered& end) {
    if (end.part >= 1 || !isInside(end.pixel, area.left, area.right))
        return;
    const int column = end.pixel - area.left;
    if (isLeftOut(end) && isInside(end.inner, area.left, area.right))
        copyColumn(layer, end.inner - area.left, column);
    fade(layer, {column, 0, column + 1, layer.GetHeight()}, end.part);
}

void softenRow(MetaBitmap& layer, const Rect& area, const PartlyCovered& end) {
    if (end.part >= 1 || !isInside(end.pixel, area.top, area.bottom))
        return;
    const int row = end.pixel - area.top;
    if (isLeftOut(end) && isInside(end.inner, area.top, area.bottom))
        copyRow(layer, end.inner - area.top, row);
    fade(layer, {0, row, layer.GetWidth(), row + 1}, end.part);
}

} // namespace

void softenEdges(MetaBitmap& layer, const Rect& area, const Box& box) {
    softenColumn(layer, area, atStart(box.left));
    softenColumn(layer, area, atEnd(box.right));
    softenRow(layer, area, atStart(box.top));
    softenRow(layer, area, atEnd(box.bottom));
}

} // namespace KestoRenderLib
