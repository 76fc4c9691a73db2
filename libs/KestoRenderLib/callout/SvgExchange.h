#pragma once

#include "KestoRenderLib/callout/CairoHandles.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>

namespace KestoRenderLib {

/// Owns a file descriptor, which is never one of the standard files and never comes into a new program by
/// itself.
class Descriptor {
public:
    /// Takes the place of `opened`, which may be -1 for none.
    explicit Descriptor(int opened = -1);
    Descriptor(Descriptor&& other) noexcept
        : number(std::exchange(other.number, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(number, other.number);
        return *this;
    }
    ~Descriptor();

    bool isOpen() const { return number >= 0; }
    int get() const { return number; }

private:
    int number;
};

/// How a program of its own is to draw an SVG.
struct SvgRequest {
    cairo_matrix_t matrix = {};
    Area area;
    double progress = 1;
    bool antialiased = true;
    std::int32_t width = 0; ///< of the picture, in pixels
    std::int32_t height = 0;
    std::int32_t processorSeconds = 0; ///< on each processor; after them the program is ended
    std::uint64_t documentBytes = 0;
};

/// Memory that two programs share: a request, the picture that comes of it, premultiplied rows without gaps,
/// and the document.
class SvgExchange {
public:
    /// None without memory.
    static std::optional<SvgExchange> create(const SvgRequest& request, std::string_view document);
    /// What the other program created. None for anything else.
    static std::optional<SvgExchange> open(int descriptor);

    SvgExchange(SvgExchange&& other) noexcept;
    SvgExchange& operator=(SvgExchange&&) = delete;
    ~SvgExchange();

    int descriptor() const { return file.get(); }
    const SvgRequest& request() const { return *static_cast<const SvgRequest*>(memory); }
    std::string_view document() const;
    CairoOwned<cairo_surface_t> picture() const;

private:
    SvgExchange(Descriptor shared, void* mapped, std::size_t mappedBytes);

    Descriptor file;
    void* memory;
    std::size_t bytes;
};

} // namespace KestoRenderLib
