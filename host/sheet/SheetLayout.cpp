#include "sheet/SheetLayout.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <utility>

namespace KestoHost {

namespace {

using KestoThumbnailer::SpriteComposer;
using KestoThumbnailer::SpriteStyle;
using KestoThumbnailer::SpriteStyleGrid;
using KestoThumbnailer::SpriteStyleRows;

constexpr int rowLimit = 4000;

constexpr std::array<std::pair<SpriteStyle, const char*>, 2> styleWords = {
    {{SpriteStyleRows, "rows"}, {SpriteStyleGrid, "grid"}}};

int scaled(int length, int numerator, int denominator) {
    const double exact = static_cast<double>(length) * numerator / denominator;
    return std::max(1, static_cast<int>(std::lround(exact)));
}

/// What the composer makes of a count in rows.
TileSize sheetOfRows(const TileSize& tile, int count) {
    const int total = tile.width * count;
    if (tile.width >= rowLimit)
        return {};
    if (total <= rowLimit)
        return {total, tile.height};
    return {rowLimit - rowLimit % tile.width, tile.height * (total / rowLimit + 1)};
}

TileSize sheetOfGrid(const TileSize& tile, int count) {
    const int columns = SpriteComposer::GetSpriteSheetColumns(count);
    return {tile.width * columns, tile.height * columns};
}

CRect placeOf(int index, SpriteStyle style, const TileSize& tile, int count) {
    return SpriteComposer::RectForImage(index, count, tile.width, tile.height, style);
}

/// A composer's sheet may end above its last row of tiles. One for more tiles reaches it, and in rows each
/// tile has the same place on both. Not for tiles that leave no room for a second one in their row.
int countForAllRows(const TileSize& tile, int count) {
    if (tile.width > rowLimit / 2)
        return count;
    const CRect last = placeOf(count - 1, SpriteStyleRows, tile, count);
    int enough = count;
    while (sheetOfRows(tile, enough).height < last.bottom)
        ++enough;
    return enough;
}

std::vector<CRect> placesOf(SpriteStyle style, const TileSize& tile, int count) {
    std::vector<CRect> places;
    places.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i)
        places.push_back(placeOf(i, style, tile, count));
    return places;
}

bool lieWhole(const CRect& place, const SheetLayout& sheet) {
    return place.left >= 0 && place.top >= 0 && place.right <= sheet.width && place.bottom <= sheet.height &&
           place.right - place.left == sheet.tile.width;
}

std::vector<int> clippedOn(const SheetLayout& sheet) {
    std::vector<int> clipped;
    for (std::size_t i = 0; i < sheet.tiles.size(); ++i)
        if (!lieWhole(sheet.tiles[i], sheet))
            clipped.push_back(static_cast<int>(i));
    return clipped;
}

/// Tile numbers, counted from 1, the first few of many.
std::string namesOf(const std::vector<int>& tiles) {
    constexpr std::size_t most = 8;
    std::vector<int> named(tiles.begin(),
                           tiles.begin() + static_cast<std::ptrdiff_t>(std::min(tiles.size(), most)));
    for (int& tile : named)
        ++tile;
    return fmt::format("{}{}", fmt::join(named, ", "), tiles.size() > most ? ", ..." : "");
}

} // namespace

TileSize tileSizeFor(const TileSize& shape, const Bounds& box) {
    const int mostWidth = box.width > 0 ? std::min(box.width, shape.width) : shape.width;
    const int mostHeight = box.height > 0 ? std::min(box.height, shape.height) : shape.height;
    const bool widthDecides =
        std::int64_t{mostWidth} * shape.height <= std::int64_t{mostHeight} * shape.width;
    if (widthDecides)
        return {mostWidth, std::min(mostHeight, scaled(mostWidth, shape.height, shape.width))};
    return {std::min(mostWidth, scaled(mostHeight, shape.width, shape.height)), mostHeight};
}

const char* wordOf(SpriteStyle style) {
    for (const auto& [known, word] : styleWords)
        if (known == style)
            return word;
    return "";
}

std::optional<SpriteStyle> parseStyle(const std::string& word) {
    for (const auto& [style, known] : styleWords)
        if (word == known)
            return style;
    return std::nullopt;
}

std::string checkStyle(const std::string& word) {
    return parseStyle(word) ? std::string() : fmt::format("expected rows or grid, found \"{}\"", word);
}

SheetLayout layOut(SpriteStyle style, const TileSize& tile, int count) {
    SheetLayout layout;
    layout.style = style;
    layout.tile = tile;
    layout.composerCount = style == SpriteStyleRows ? countForAllRows(tile, count) : count;
    const TileSize sheet = style == SpriteStyleRows ? sheetOfRows(tile, layout.composerCount)
                                                    : sheetOfGrid(tile, layout.composerCount);
    layout.width = sheet.width;
    layout.height = sheet.height;
    layout.tiles = placesOf(style, tile, count);
    layout.clipped = clippedOn(layout);
    return layout;
}

SheetLayout layOutWhole(const TileSize& tile, int count) {
    SheetLayout rows = layOut(SpriteStyleRows, tile, count);
    return rows.clipped.empty() ? rows : layOut(SpriteStyleGrid, tile, count);
}

int unclippedWidthBelow(int width) {
    int divisor = std::min(width, rowLimit / 2);
    while (rowLimit % divisor != 0)
        --divisor;
    return divisor;
}

std::string clippingWarning(const SheetLayout& layout) {
    if (layout.clipped.empty())
        return {};
    return fmt::format(
        "{} of {} tiles are cut off by the sheet's edge: {}. Rows of tiles {} pixels wide do that; "
        " leave out --style or use --style grid, or let tiles be {} pixels wide.",
        layout.clipped.size(), layout.tiles.size(), namesOf(layout.clipped), layout.tile.width,
        unclippedWidthBelow(layout.tile.width));
}

} // namespace KestoHost
