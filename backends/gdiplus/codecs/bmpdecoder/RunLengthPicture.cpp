#include "gdiplus/codecs/bmpdecoder/RunLengthPicture.h"

#include "gdiplus/codecs/BufferedReader.h"

namespace GdiplusBackend {

class RunLengthPicture::Reader {
public:
    Reader(RunLengthPicture& target, const BmpHeader& ofFile, const ByteSource& source)
        : picture(target)
        , header(ofFile)
        , bytes(source, ofFile.pixels)
        , halves(ofFile.coding == BmpHeader::Coding::RunLength4) {}

    Result<void> read() {
        for (;;) {
            std::array<std::byte, 2> code;
            if (!bytes.read(code))
                return truncated("BMP: the file ends before the picture does");
            const auto count = std::to_integer<unsigned int>(code[0]);
            if (count > 0) {
                for (unsigned int i = 0; i < count; ++i)
                    put(part(code[1], i));
                continue;
            }
            const auto escape = std::to_integer<unsigned int>(code[1]);
            if (escape == endOfPicture)
                return {};
            if (!followEscape(escape))
                return truncated("BMP: the file ends before the picture does");
        }
    }

private:
    static constexpr unsigned int endOfRow = 0;
    static constexpr unsigned int endOfPicture = 1;
    static constexpr unsigned int move = 2;

    bool followEscape(unsigned int escape) {
        if (escape == endOfRow) {
            x = 0;
            ++rowFromBottom;
            return true;
        }
        if (escape == move) {
            std::array<std::byte, 2> steps;
            const bool read = bytes.read(steps);
            x += std::to_integer<std::uint64_t>(steps[0]);
            rowFromBottom += std::to_integer<std::uint64_t>(steps[1]);
            return read;
        }
        return copyPixels(escape);
    }

    /// Pixels as they are, filled up to an even number of bytes.
    bool copyPixels(unsigned int count) {
        std::array<std::byte, 256> stored;
        const unsigned int storedBytes = halves ? (count + 1) / 2 : count;
        if (!bytes.read(std::span(stored).first((storedBytes + 1) & ~1U)))
            return false;
        for (unsigned int i = 0; i < count; ++i)
            put(part(stored[halves ? i / 2 : i], i));
        return true;
    }

    /// The index of pixel `i` of a run: of two in a byte, the first is in the high half.
    std::byte part(std::byte stored, unsigned int i) const {
        if (!halves)
            return stored;
        return i % 2 == 0 ? stored >> 4 : stored & std::byte{0x0F};
    }

    void put(std::byte index) {
        if (x < header.width && rowFromBottom < header.height) {
            const std::size_t row =
                (header.height - 1 - static_cast<std::size_t>(rowFromBottom)) * picture.rowBytes;
            if (!halves) {
                picture.indices[row + x] = index;
            } else {
                std::byte& pair = picture.indices[row + x / 2];
                pair = x % 2 == 0 ? (pair & std::byte{0x0F}) | index << 4 : (pair & std::byte{0xF0}) | index;
            }
        }
        ++x;
    }

    RunLengthPicture& picture;
    const BmpHeader& header;
    BufferedReader bytes;
    bool halves;
    std::uint64_t x = 0;
    std::uint64_t rowFromBottom = 0;
};

Result<RunLengthPicture> RunLengthPicture::read(const BmpHeader& header, const ByteSource& source) {
    RunLengthPicture picture(header);
    if (Result<void> done = Reader(picture, header, source).read(); !done)
        return tl::unexpected(done.error());
    return picture;
}

} // namespace GdiplusBackend
