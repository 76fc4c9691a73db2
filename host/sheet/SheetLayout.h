#pragma once

#include "Arguments.h"

#include <KestoThumbnailer/SpriteComposer.h>

#include <optional>
#include <string>
#include <vector>

namespace KestoHost {

/// In pixels.
struct TileSize {
    int width = 0;
    int height = 0;

    friend bool operator==(const TileSize&, const TileSize&) = default;
};

/// The size of the given shape that fits into `box` as well as whole pixels can; never larger than `shape`
/// itself, whose lengths are at least 1, and never without a pixel.
TileSize tileSizeFor(const TileSize& shape, const Bounds& box);

/// Where the tiles of a sheet lie, before there is a sheet.
struct SheetLayout {
    KestoThumbnailer::SpriteStyle style = KestoThumbnailer::SpriteStyleRows;
    TileSize tile;
    /// How many tiles the composer is to be made for; more than there are where their sheet would be too low.
    int composerCount = 0;
    int width = 0; ///< of the sheet
    int height = 0;
    std::vector<CRect> tiles;
    /// The tiles that do not lie on the sheet as a whole.
    std::vector<int> clipped;
};

/// The word of a style on the command line.
const char* wordOf(KestoThumbnailer::SpriteStyle style);
std::optional<KestoThumbnailer::SpriteStyle> parseStyle(const std::string& word);
/// As CLI11 wants it.
std::string checkStyle(const std::string& word);

/// `count` tiles in that style. Rows have no place for tiles of 4000 pixels and wider: all are then clipped.
SheetLayout layOut(KestoThumbnailer::SpriteStyle style, const TileSize& tile, int count);

/// In the style that clips nothing; in rows where both do.
SheetLayout layOutWhole(const TileSize& tile, int count);

/// The greatest width up to `width` whose rows clip no tile of whatever count.
int unclippedWidthBelow(int width);

/// A warning that tells which tiles are clipped and how to get them whole; empty without clipped tiles.
std::string clippingWarning(const SheetLayout& layout);

} // namespace KestoHost
