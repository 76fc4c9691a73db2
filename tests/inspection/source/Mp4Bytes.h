#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// Bytes of MP4 files, atom by atom.
namespace Mp4Bytes {

inline std::string number(std::uint64_t value, int bytes) {
    std::string text;
    for (int shift = (bytes - 1) * 8; shift >= 0; shift -= 8)
        text += static_cast<char>(value >> shift & 0xFF);
    return text;
}

inline std::string word(std::uint64_t value) {
    return number(value, 4);
}

inline std::string words(const std::vector<std::uint32_t>& values) {
    std::string text;
    for (const std::uint32_t value : values)
        text += word(value);
    return text;
}

inline std::string zeros(std::size_t count) {
    return std::string(count, '\0');
}

/// An atom that claims a size of its own.
inline std::string atomOfSize(std::uint32_t size, const std::string& type, const std::string& content = "") {
    return word(size) + type + content;
}

inline std::string atom(const std::string& type, const std::string& content = "") {
    return atomOfSize(static_cast<std::uint32_t>(content.size() + 8), type, content);
}

/// With its size in 64 bits.
inline std::string longAtomOfSize(std::uint64_t size, const std::string& type,
                                  const std::string& content = "") {
    return word(1) + type + number(size, 8) + content;
}

inline std::string longAtom(const std::string& type, const std::string& content = "") {
    return longAtomOfSize(content.size() + 16, type, content);
}

inline std::string ftyp() {
    return atom("ftyp", "isom" + word(0) + "isom");
}

/// The words of a matrix in the order of the file.
struct Matrix {
    std::uint32_t a = 0x10000, b = 0, u = 0, c = 0, d = 0x10000, v = 0, x = 0, y = 0, w = 0x40000000;

    std::string bytes() const { return words({a, b, u, c, d, v, x, y, w}); }
};

constexpr std::uint32_t minusOne = 0xFFFF0000; // in 16.16
constexpr Matrix quarterTurn = {.a = 0, .b = 0x10000, .c = minusOne, .d = 0};

struct Tkhd {
    int version = 0;
    std::uint32_t trackId = 1;
    std::uint32_t volume = 0; // 8.8
    Matrix matrix = {};
    std::uint32_t width = 0; // in whole pixels
    std::uint32_t height = 0;

    std::string bytes() const {
        const int timeSize = version == 0 ? 4 : 8;
        return atom("tkhd", word(static_cast<std::uint32_t>(version) << 24 | 3) + number(0x11, timeSize) +
                                number(0x22, timeSize) + word(trackId) + zeros(4) + number(0x33, timeSize) +
                                zeros(8) + zeros(4) + number(volume, 2) + zeros(2) + matrix.bytes() +
                                word(width << 16 | 0x8000) + word(height << 16 | 0x8000));
    }
};

inline std::string mvhd(const Matrix& matrix = {}, int version = 0) {
    const int timeSize = version == 0 ? 4 : 8;
    return atom("mvhd", word(static_cast<std::uint32_t>(version) << 24) + number(1, timeSize) +
                            number(2, timeSize) + word(1000) + number(5000, timeSize) + word(0x10000) +
                            number(0x100, 2) + zeros(10) + matrix.bytes() + zeros(24) + word(2));
}

inline std::string hdlr(const std::string& subtype) {
    return atom("hdlr", word(0) + "mhlr" + subtype + zeros(12) + "Handler" + zeros(1));
}

inline std::string sampleEntry(const std::string& format, const std::string& content = zeros(8)) {
    return atom(format, content);
}

/// A sample entry of video, with what follows its fixed part (ISO/IEC 14496-12, 12.1.3).
inline std::string videoEntry(const std::string& format, std::uint32_t width, std::uint32_t height,
                              const std::string& extensions = "") {
    return sampleEntry(format, zeros(24) + number(width, 2) + number(height, 2) + zeros(50) + extensions);
}

inline std::string pasp(std::uint32_t horizontal, std::uint32_t vertical) {
    return atom("pasp", words({horizontal, vertical}));
}

inline std::string stsd(std::uint32_t count, const std::string& entries) {
    return atom("stsd", words({0, count}) + entries);
}

/// `tkhd` and the tree down to `stsd`, each part as bytes.
inline std::string trak(const std::string& tkhd, const std::string& hdlr, const std::string& stsd) {
    return atom("trak", tkhd + atom("mdia", hdlr + atom("minf", atom("stbl", stsd))));
}

inline std::string videoTrak(const Tkhd& header = {.width = 320, .height = 240},
                             const std::string& description = stsd(1, videoEntry("avc1", 320, 240))) {
    return trak(header.bytes(), hdlr("vide"), description);
}

inline std::string soundTrak() {
    return trak(Tkhd{.trackId = 2, .volume = 0x100}.bytes(), hdlr("soun"), stsd(1, sampleEntry("mp4a")));
}

} // namespace Mp4Bytes
