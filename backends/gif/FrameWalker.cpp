#include "gif/FrameWalker.h"

#include <algorithm>
#include <string_view>

namespace GifBackend {

namespace {

// GIF89a, appendix A.
constexpr std::uint8_t imageSeparator = 0x2C;
constexpr std::uint8_t extensionIntroducer = 0x21;
constexpr std::uint8_t trailer = 0x3B;
constexpr std::uint8_t graphicControlLabel = 0xF9;
constexpr std::uint8_t applicationLabel = 0xFF;

constexpr std::size_t bytesPerColour = 3;

tl::unexpected<Error> endsEarly() {
    return tl::unexpected(Error{Fault::Truncated, "the GIF file ends before its trailer"});
}

tl::unexpected<Error> damaged(const char* message) {
    return tl::unexpected(Error{Fault::Damaged, message});
}

int wordAt(std::span<const std::uint8_t> bytes, std::size_t place) {
    return bytes[place] | bytes[place + 1] << 8;
}

/// Of a colour table whose presence and size the packed fields tell.
int coloursIn(std::uint8_t packedFields) {
    return packedFields & 0x80U ? 2 << (packedFields & 7U) : 0;
}

Disposal disposalFrom(std::uint8_t packedFields) {
    switch (packedFields >> 2 & 7U) {
    case 2:
        return Disposal::Clear;
    case 3:
    case 4: // what older texts gave for 3; browsers take either
        return Disposal::Restore;
    default: // 5 to 7 are not defined
        return Disposal::Keep;
    }
}

Palette colours(std::span<const std::uint8_t> bytes) {
    Palette palette;
    palette.reserve(bytes.size() / bytesPerColour);
    for (; bytes.size() >= bytesPerColour; bytes = bytes.subspan(bytesPerColour))
        palette.push_back(0xFF000000U | static_cast<std::uint32_t>(bytes[0]) << 16 |
                          static_cast<std::uint32_t>(bytes[1]) << 8 | bytes[2]);
    return palette;
}

} // namespace

FrameWalker::FrameWalker(IBytes& source)
    : reader(source) {}

template <std::size_t size>
Result<FrameWalker::Block<size>> FrameWalker::readBlock() {
    Block<size> block = {};
    if (reader.read(block) < size)
        return endsEarly();
    return block;
}

Result<Palette> FrameWalker::readPalette(std::uint8_t packedFields) {
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(coloursIn(packedFields)) * bytesPerColour);
    if (reader.read(bytes) < bytes.size())
        return endsEarly();
    return colours(bytes);
}

Result<Screen> FrameWalker::readScreen() {
    const auto block = readBlock<13>();
    if (!block)
        return tl::unexpected(block.error());
    const std::string_view signature(reinterpret_cast<const char*>(block->data()), 6);
    if (signature != "GIF87a" && signature != "GIF89a")
        return damaged("not a GIF file");
    auto palette = readPalette((*block)[10]);
    if (!palette)
        return tl::unexpected(palette.error());
    return Screen{.width = wordAt(*block, 6),
                  .height = wordAt(*block, 8),
                  .palette = std::move(*palette),
                  .backgroundIndex = (*block)[11]};
}

Result<void> FrameWalker::skipSubBlocks() {
    for (;;) {
        const auto length = reader.byte();
        if (!length)
            return endsEarly();
        if (*length == 0)
            return {};
        reader.skip(*length);
    }
}

Result<void> FrameWalker::readControl() {
    const auto length = reader.byte();
    if (!length)
        return endsEarly();
    if (*length < 4) {
        reader.skip(*length);
        return *length == 0 ? Result<void>{} : skipSubBlocks();
    }
    const auto block = readBlock<4>();
    if (!block)
        return tl::unexpected(block.error());
    control.disposal = disposalFrom((*block)[0]);
    control.delay = wordAt(*block, 1);
    control.transparentIndex = (*block)[0] & 1U ? std::optional((*block)[3]) : std::nullopt;
    reader.skip(*length - 4U);
    return skipSubBlocks();
}

/// The application extension of looping, by either of its two names.
Result<void> FrameWalker::readApplication() {
    constexpr std::uint8_t nameLength = 11;
    const auto length = reader.byte();
    if (!length)
        return endsEarly();
    if (*length != nameLength) {
        reader.skip(*length);
        return *length == 0 ? Result<void>{} : skipSubBlocks();
    }
    const auto name = readBlock<nameLength>();
    if (!name)
        return tl::unexpected(name.error());
    const std::string_view text(reinterpret_cast<const char*>(name->data()), name->size());
    if (text != "NETSCAPE2.0" && text != "ANIMEXTS1.0")
        return skipSubBlocks();
    const auto size = reader.byte();
    if (!size)
        return endsEarly();
    if (*size < 3) {
        reader.skip(*size);
        return *size == 0 ? Result<void>{} : skipSubBlocks();
    }
    const auto block = readBlock<3>();
    if (!block)
        return tl::unexpected(block.error());
    if (((*block)[0] & 7U) == 1)
        loops = wordAt(*block, 1);
    reader.skip(*size - 3U);
    return skipSubBlocks();
}

Result<void> FrameWalker::readExtension() {
    const auto label = reader.byte();
    if (!label)
        return endsEarly();
    switch (*label) {
    case graphicControlLabel:
        return readControl();
    case applicationLabel:
        return readApplication();
    default:
        return skipSubBlocks();
    }
}

Result<void> FrameWalker::skipPixels() {
    isBeforePixels = false;
    if (!reader.byte()) // the smallest code size
        return endsEarly();
    return skipSubBlocks();
}

Result<Frame> FrameWalker::readFrame() {
    const auto descriptor = readBlock<9>();
    if (!descriptor)
        return tl::unexpected(descriptor.error());
    const std::uint8_t packedFields = (*descriptor)[8];
    Frame frame = control;
    control = {};
    frame.left = wordAt(*descriptor, 0);
    frame.top = wordAt(*descriptor, 2);
    frame.width = wordAt(*descriptor, 4);
    frame.height = wordAt(*descriptor, 6);
    frame.interlaced = (packedFields & 0x40U) != 0;
    frame.localColours = coloursIn(packedFields);
    frame.palettePlace = reader.place();
    reader.skip(static_cast<std::size_t>(frame.localColours) * bytesPerColour);
    frame.pixelsPlace = reader.place();
    isBeforePixels = true;
    return frame;
}

Result<std::optional<Frame>> FrameWalker::next() {
    if (isBeforePixels)
        if (const auto skipped = skipPixels(); !skipped)
            return tl::unexpected(skipped.error());
    for (;;) {
        const auto introducer = reader.byte();
        if (!introducer)
            return endsEarly();
        if (*introducer == trailer)
            return std::nullopt;
        if (*introducer == imageSeparator)
            return readFrame().map([](const Frame& frame) { return std::optional(frame); });
        if (*introducer != extensionIntroducer)
            return damaged("a GIF block of unknown kind");
        if (const auto read = readExtension(); !read)
            return tl::unexpected(read.error());
    }
}

Palette readPaletteAt(IBytes& source, std::uint64_t place, int count) {
    std::array<std::byte, 256 * bytesPerColour> bytes = {};
    const std::size_t wanted = std::min(bytes.size(), static_cast<std::size_t>(count) * bytesPerColour);
    const std::size_t got = source.read(place, std::span(bytes).first(wanted));
    return colours({reinterpret_cast<const std::uint8_t*>(bytes.data()), got});
}

} // namespace GifBackend
