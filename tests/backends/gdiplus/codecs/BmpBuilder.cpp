#include "backends/gdiplus/codecs/BmpBuilder.h"

namespace GdiplusBackend {

namespace {

void append(Bytes& file, std::uint64_t value, int bytes) {
    for (int i = 0; i < bytes; ++i)
        file.push_back(static_cast<std::byte>(value >> (8 * i)));
}

} // namespace

Bytes BmpBuilder::build() const {
    const bool core = headerSize == 12;
    const bool masksInside = headerSize >= 52;
    const auto extra =
        static_cast<std::uint32_t>((masksInside ? 0 : masks.size() * 4) + palette.size() * (core ? 3U : 4U));
    Bytes file = {std::byte{'B'}, std::byte{'M'}};
    append(file, 0, 8);
    append(file, pixelsAt == 1 ? 14 + headerSize + extra : pixelsAt, 4);
    append(file, headerSize, 4);
    append(file, static_cast<std::uint32_t>(width), core ? 2 : 4);
    append(file, static_cast<std::uint32_t>(height), core ? 2 : 4);
    append(file, 1, 2);
    append(file, static_cast<std::uint32_t>(bits), 2);
    if (!core) {
        append(file, coding, 4);
        append(file, 0, 4);
        append(file, perMetre, 4);
        append(file, perMetre, 4);
        append(file, coloursUsed, 4);
        append(file, 0, 4);
    }
    for (const std::uint32_t mask : masks)
        append(file, mask, 4);
    if (file.size() < 14 + headerSize)
        file.resize(14 + headerSize);
    for (const std::uint32_t entry : palette)
        append(file, entry, core ? 3 : 4);
    for (const int value : pixels)
        file.push_back(static_cast<std::byte>(value));
    return file;
}

} // namespace GdiplusBackend
