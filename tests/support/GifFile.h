#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace TestSupport {

using GifColours = std::vector<std::uint32_t>; ///< 0xRRGGBB, 256 at most

struct GifFrame {
    int left = 0;
    int top = 0;
    int width = 1;
    int height = 1;
    std::function<int(int x, int y)> index = [](int, int) { return 0; };
    int disposal = 0;
    int delay = 10; ///< hundredths of a second
    std::optional<int> transparentIndex = {};
    GifColours palette = {}; ///< local; empty: the global one
    bool interlaced = false;
};

enum class GifCodes {
    Plain,       ///< each index is a code of its own
    Packed,      ///< LZW, starting anew when the table is full
    KeepingFull, ///< LZW, going on with a full table
};

/// Writes GIF files (GIF89a).
class GifFile {
public:
    GifFile(int screenWidth, int screenHeight, GifColours globalPalette, int backgroundIndex = 0);

    GifFile& frame(GifFrame spec);
    /// An application extension of looping, between the frames as they are called.
    GifFile& loops(int count, const std::string& application = "NETSCAPE2.0");
    GifFile& extension(const std::vector<unsigned char>& bytes);
    GifFile& codes(GifCodes kind);

    /// With the trailer.
    std::vector<unsigned char> bytes() const;

private:
    void putColours(const GifColours& colours);

    std::vector<unsigned char> file;
    GifCodes codeKind = GifCodes::Plain;
};

} // namespace TestSupport
