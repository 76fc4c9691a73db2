#include "backends/gdiplus/codecs/WebpBuilder.h"

#include <webp/encode.h>

#include <memory>
#include <stdexcept>

namespace GdiplusBackend {

namespace {

constexpr std::ptrdiff_t riffHeaderBytes = 12;

void putText(Bytes& bytes, std::string_view text) {
    const auto added = std::as_bytes(std::span(text));
    bytes.insert(bytes.end(), added.begin(), added.end());
}

void putNumber(Bytes& bytes, std::size_t value, int count) {
    for (int i = 0; i < count; ++i)
        bytes.push_back(static_cast<std::byte>(value >> (8 * i) & 0xFFU));
}

void putChunk(Bytes& bytes, std::string_view kind, const Bytes& payload) {
    putText(bytes, kind);
    putNumber(bytes, payload.size(), 4);
    bytes.insert(bytes.end(), payload.begin(), payload.end());
    if (payload.size() % 2 != 0)
        bytes.push_back(std::byte{0});
}

} // namespace

Bytes buildWebp(WebpKind kind, int width, int height,
                const std::function<std::uint32_t(int x, int y)>& pixel) {
    std::vector<std::uint8_t> bgra;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            for (const unsigned shift : {0U, 8U, 16U, 24U})
                bgra.push_back(static_cast<std::uint8_t>(pixel(x, y) >> shift));
    std::uint8_t* file = nullptr;
    const std::size_t size = kind == WebpKind::Lossless
                                 ? WebPEncodeLosslessBGRA(bgra.data(), width, height, width * 4, &file)
                                 : WebPEncodeBGRA(bgra.data(), width, height, width * 4, 95, &file);
    const std::unique_ptr<std::uint8_t, void (*)(void*)> owner(file, WebPFree);
    if (size == 0)
        throw std::logic_error("the WebP file can't be written");
    const auto bytes = std::as_bytes(std::span(file, size));
    return {bytes.begin(), bytes.end()};
}

ExtendedWebp::ExtendedWebp(int flags, int canvasWidth, int canvasHeight) {
    Bytes payload;
    putNumber(payload, static_cast<std::size_t>(flags), 4);
    putNumber(payload, static_cast<std::size_t>(canvasWidth - 1), 3);
    putNumber(payload, static_cast<std::size_t>(canvasHeight - 1), 3);
    putChunk(chunks, "VP8X", payload);
}

ExtendedWebp& ExtendedWebp::chunk(std::string_view kind, const Bytes& payload) {
    putChunk(chunks, kind, payload);
    return *this;
}

ExtendedWebp& ExtendedWebp::picture(const Bytes& simpleFile) {
    chunks.insert(chunks.end(), simpleFile.begin() + riffHeaderBytes, simpleFile.end());
    return *this;
}

ExtendedWebp& ExtendedWebp::frame(int left, int top, int width, int height, const Bytes& simpleFile) {
    Bytes payload;
    for (const int number : {left / 2, top / 2, width - 1, height - 1, 100})
        putNumber(payload, static_cast<std::size_t>(number), 3);
    putNumber(payload, 0, 1);
    payload.insert(payload.end(), simpleFile.begin() + riffHeaderBytes, simpleFile.end());
    return chunk("ANMF", payload);
}

Bytes ExtendedWebp::build() const {
    Bytes file;
    putText(file, "RIFF");
    putNumber(file, chunks.size() + 4, 4);
    putText(file, "WEBP");
    file.insert(file.end(), chunks.begin(), chunks.end());
    return file;
}

} // namespace GdiplusBackend
