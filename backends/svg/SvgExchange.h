#pragma once

#include "svg/CairoOwned.h"
#include "svg/SvgTypes.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace SvgBackend {

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

/// What a program of its own is to do with a document.
struct SvgRequest {
    cairo_matrix_t matrix = {};
    SvgPlace place;
    std::int32_t width = 0; ///< of the picture, in pixels; 0 when the document is only measured
    std::int32_t height = 0;
    std::int32_t processorSeconds = 0; ///< on each processor; after them the program is ended

    bool isMeasured() const { return width == 0; }
};

/// Memory that two programs share: a request, the document and its stylesheet, and what comes of them: a
/// size, or a picture of premultiplied rows without gaps, or a message.
class SvgExchange {
public:
    /// None without memory.
    static std::optional<SvgExchange> create(const SvgRequest& request, const SvgDocument& document);
    /// What the other program created. None for anything else.
    static std::optional<SvgExchange> open(int descriptor);

    SvgExchange(SvgExchange&& other) noexcept;
    SvgExchange& operator=(SvgExchange&&) = delete;
    ~SvgExchange();

    int descriptor() const { return file.get(); }
    const SvgRequest& request() const { return header().request; }
    SvgDocument document() const; ///< without its origin
    CairoOwned<cairo_surface_t> picture() const;

    SvgSize size() const { return header().size; }
    void setSize(SvgSize size) { header().size = size; }
    std::string message() const;
    void setMessage(std::string_view message); ///< a long one loses its end

private:
    struct Header {
        SvgRequest request;
        std::uint64_t textBytes = 0;
        std::uint64_t stylesheetBytes = 0;
        SvgSize size;
        std::array<char, 1024> message = {};
    };

    SvgExchange(Descriptor shared, void* mapped, std::size_t mappedBytes);

    Header& header() const { return *static_cast<Header*>(memory); }
    static std::size_t bytesOf(const Header& header);

    Descriptor file;
    void* memory;
    std::size_t bytes;
};

} // namespace SvgBackend
