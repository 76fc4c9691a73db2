#include "support/GifFile.h"

#include <algorithm>
#include <array>
#include <map>
#include <utility>

namespace TestSupport {

namespace {

using Bytes = std::vector<unsigned char>;

constexpr int codeSize = 8;
constexpr int clearCode = 1 << codeSize;
constexpr int endCode = clearCode + 1;
constexpr int mostCodes = 4096;

unsigned char byteOf(int value) {
    return static_cast<unsigned char>(value);
}

void putWord(Bytes& bytes, int value) {
    bytes.push_back(byteOf(value & 255));
    bytes.push_back(byteOf(value >> 8));
}

/// The exponent that the size of a palette is told by.
int sizeField(const GifColours& colours) {
    int field = 0;
    while ((std::size_t{2} << field) < colours.size())
        ++field;
    return field;
}

class CodeWriter {
public:
    void put(int code, int bits) {
        store |= static_cast<unsigned>(code) << held;
        for (held += bits; held >= 8; held -= 8) {
            bytes.push_back(byteOf(static_cast<int>(store & 255U)));
            store >>= 8;
        }
    }
    Bytes finish() {
        if (held > 0)
            bytes.push_back(byteOf(static_cast<int>(store & 255U)));
        return std::move(bytes);
    }

private:
    Bytes bytes;
    unsigned store = 0;
    int held = 0;
};

Bytes plainCodes(const std::vector<int>& indices) {
    constexpr std::size_t untilCodesGrow = 250;
    CodeWriter writer;
    for (std::size_t i = 0; i < indices.size(); ++i) {
        if (i % untilCodesGrow == 0)
            writer.put(clearCode, codeSize + 1);
        writer.put(indices[i], codeSize + 1);
    }
    writer.put(endCode, codeSize + 1);
    return writer.finish();
}

/// As GIF89a, appendix F, tells.
class Packer {
public:
    explicit Packer(bool keepFullTable)
        : keepsFull(keepFullTable) {}

    Bytes pack(const std::vector<int>& indices) {
        put(clearCode);
        reset();
        int prefix = -1;
        for (const int index : indices)
            prefix = prefix < 0 ? index : extend(prefix, index);
        if (prefix >= 0)
            putAndGrow(prefix);
        put(endCode);
        return writer.finish();
    }

private:
    void put(int code) { writer.put(code, bits); }
    void reset() {
        strings.clear();
        next = endCode + 1;
        bits = codeSize + 1;
    }
    /// A reader learns each string one code after it was made.
    void putAndGrow(int code) {
        put(code);
        if (next >= 1 << bits && bits < 12)
            ++bits;
    }
    int extend(int prefix, int index) {
        if (const auto known = strings.find({prefix, index}); known != strings.end())
            return known->second;
        putAndGrow(prefix);
        if (next < mostCodes) {
            strings[{prefix, index}] = next++;
        } else if (!keepsFull) {
            put(clearCode);
            reset();
        }
        return index;
    }

    bool keepsFull;
    CodeWriter writer;
    std::map<std::pair<int, int>, int> strings;
    int next = 0;
    int bits = codeSize + 1;
};

std::vector<int> indicesOf(const GifFrame& spec) {
    const std::vector<std::array<int, 2>> passes =
        spec.interlaced ? std::vector<std::array<int, 2>>{{0, 8}, {4, 8}, {2, 4}, {1, 2}}
                        : std::vector<std::array<int, 2>>{{0, 1}};
    std::vector<int> indices;
    for (const auto& [first, step] : passes)
        for (int y = first; y < spec.height; y += step)
            for (int x = 0; x < spec.width; ++x)
                indices.push_back(spec.index(x, y));
    return indices;
}

} // namespace

GifFile::GifFile(int screenWidth, int screenHeight, GifColours globalPalette, int backgroundIndex) {
    file = {'G', 'I', 'F', '8', '9', 'a'};
    putWord(file, screenWidth);
    putWord(file, screenHeight);
    file.push_back(byteOf(globalPalette.empty() ? 0x70 : 0xF0 | sizeField(globalPalette)));
    file.push_back(byteOf(backgroundIndex));
    file.push_back(0);
    putColours(globalPalette);
}

void GifFile::putColours(const GifColours& colours) {
    if (colours.empty())
        return;
    const std::size_t count = std::size_t{2} << sizeField(colours);
    for (std::size_t i = 0; i < count; ++i)
        for (const int shift : {16, 8, 0})
            file.push_back(i < colours.size() ? static_cast<unsigned char>(colours[i] >> shift & 255U) : 0);
}

GifFile& GifFile::codes(GifCodes kind) {
    codeKind = kind;
    return *this;
}

GifFile& GifFile::frame(GifFrame spec) {
    file.insert(file.end(), {0x21, 0xF9, 4, byteOf(spec.disposal << 2 | (spec.transparentIndex ? 1 : 0))});
    putWord(file, spec.delay);
    file.push_back(byteOf(spec.transparentIndex.value_or(0)));
    file.insert(file.end(), {0, 0x2C});
    for (const int value : {spec.left, spec.top, spec.width, spec.height})
        putWord(file, value);
    file.push_back(
        byteOf((spec.interlaced ? 0x40 : 0) | (spec.palette.empty() ? 0 : 0x80 | sizeField(spec.palette))));
    putColours(spec.palette);
    file.push_back(codeSize);
    const std::vector<int> indices = indicesOf(spec);
    const Bytes packed = codeKind == GifCodes::Plain
                             ? plainCodes(indices)
                             : Packer(codeKind == GifCodes::KeepingFull).pack(indices);
    constexpr std::size_t longestBlock = 255;
    for (std::size_t at = 0; at < packed.size(); at += longestBlock) {
        const std::size_t length = std::min(longestBlock, packed.size() - at);
        file.push_back(static_cast<unsigned char>(length));
        file.insert(file.end(), packed.begin() + static_cast<std::ptrdiff_t>(at),
                    packed.begin() + static_cast<std::ptrdiff_t>(at + length));
    }
    file.push_back(0);
    return *this;
}

GifFile& GifFile::loops(int count, const std::string& application) {
    file.insert(file.end(), {0x21, 0xFF, static_cast<unsigned char>(application.size())});
    file.insert(file.end(), application.begin(), application.end());
    file.insert(file.end(), {3, 1});
    putWord(file, count);
    file.push_back(0);
    return *this;
}

GifFile& GifFile::extension(const std::vector<unsigned char>& bytes) {
    file.insert(file.end(), bytes.begin(), bytes.end());
    return *this;
}

std::vector<unsigned char> GifFile::bytes() const {
    Bytes whole = file;
    whole.push_back(0x3B);
    return whole;
}

} // namespace TestSupport
