#pragma once

#include "gif/ByteReader.h"
#include "gif/Frame.h"
#include "gif/GifError.h"

#include <optional>
#include <vector>

namespace GifBackend {

/// Walks over the blocks of a file from the start, without unpacking pixels.
class FrameWalker {
public:
    /// `source` must outlive the walker.
    explicit FrameWalker(IBytes& source);

    /// To be called first. A screen of no width or no height is returned as it stands.
    Result<Screen> readScreen();

    /// The header of the next frame; empty at the trailer. The pixels of the frame before are walked over
    /// now, so that one whose pixels are cut off still has its header. After an error there is no next.
    Result<std::optional<Frame>> next();

    /// How often a player starts the animation again, as far as was walked: 0 for ever; empty without a word
    /// about it.
    std::optional<int> repetitions() const { return loops; }

private:
    template <std::size_t size>
    using Block = std::array<std::uint8_t, size>;

    template <std::size_t size>
    Result<Block<size>> readBlock();
    Result<Palette> readPalette(std::uint8_t packedFields);
    Result<void> readExtension();
    Result<void> readControl();
    Result<void> readApplication();
    Result<void> skipSubBlocks();
    Result<void> skipPixels();
    Result<Frame> readFrame();

    ByteReader reader;
    bool isBeforePixels = false;
    std::optional<int> loops;
    Frame control; ///< with what the next frame's graphic control extension tells
};

/// As many colours of a palette in the file as there are bytes for.
Palette readPaletteAt(IBytes& source, std::uint64_t place, int colours);

} // namespace GifBackend
