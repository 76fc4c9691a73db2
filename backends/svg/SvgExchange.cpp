#include "svg/SvgExchange.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <new>

namespace SvgBackend {

namespace {

constexpr std::size_t pictureStart = 2048;

std::size_t pictureBytes(const SvgRequest& request) {
    return std::size_t{4} * static_cast<std::size_t>(request.width) *
           static_cast<std::size_t>(request.height);
}

/// Null without memory.
void* mapped(int descriptor, std::size_t bytes) {
    void* memory = ::mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_SHARED, descriptor, 0);
    return memory == MAP_FAILED ? nullptr : memory;
}

bool isWithinCharacter(char c) {
    return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U; // UTF-8 (RFC 3629, 3)
}

} // namespace

Descriptor::Descriptor(int opened)
    : number(opened) {
    if (opened < 0 || opened > STDERR_FILENO)
        return;
    number = ::fcntl(opened, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    ::close(opened);
}

Descriptor::~Descriptor() {
    if (number >= 0)
        ::close(number);
}

std::size_t SvgExchange::bytesOf(const Header& header) {
    static_assert(sizeof(Header) <= pictureStart);
    return pictureStart + pictureBytes(header.request) + header.textBytes + header.stylesheetBytes;
}

std::optional<SvgExchange> SvgExchange::create(const SvgRequest& request, const SvgDocument& document) {
    Header header;
    header.request = request;
    header.textBytes = document.text.size();
    header.stylesheetBytes = document.stylesheet.size();
    Descriptor file(::memfd_create("kesto-svg", MFD_CLOEXEC));
    const std::size_t bytes = bytesOf(header);
    if (!file.isOpen() || ::ftruncate(file.get(), static_cast<off_t>(bytes)) != 0)
        return std::nullopt;
    void* memory = mapped(file.get(), bytes);
    if (!memory)
        return std::nullopt;
    SvgExchange exchange(std::move(file), memory, bytes);
    new (memory) Header(header);
    char* const texts = static_cast<char*>(memory) + pictureStart + pictureBytes(request);
    document.text.copy(texts, document.text.size());
    document.stylesheet.copy(texts + document.text.size(), document.stylesheet.size());
    return exchange;
}

std::optional<SvgExchange> SvgExchange::open(int descriptor) {
    struct stat status {};
    if (::fstat(descriptor, &status) != 0 || status.st_size < static_cast<off_t>(pictureStart))
        return std::nullopt;
    const auto bytes = static_cast<std::size_t>(status.st_size);
    void* memory = mapped(descriptor, bytes);
    if (!memory)
        return std::nullopt;
    SvgExchange exchange(Descriptor(), memory, bytes);
    const SvgRequest& request = exchange.request();
    const bool fits = request.width >= 0 && request.height >= 0 && bytesOf(exchange.header()) == bytes;
    return fits ? std::optional(std::move(exchange)) : std::nullopt;
}

SvgExchange::SvgExchange(Descriptor shared, void* mappedMemory, std::size_t mappedBytes)
    : file(std::move(shared))
    , memory(mappedMemory)
    , bytes(mappedBytes) {}

SvgExchange::SvgExchange(SvgExchange&& other) noexcept
    : file(std::move(other.file))
    , memory(std::exchange(other.memory, nullptr))
    , bytes(other.bytes) {}

SvgExchange::~SvgExchange() {
    if (memory)
        ::munmap(memory, bytes);
}

SvgDocument SvgExchange::document() const {
    const char* const texts = static_cast<const char*>(memory) + pictureStart + pictureBytes(request());
    return {{texts, header().textBytes}, {texts + header().textBytes, header().stylesheetBytes}};
}

CairoOwned<cairo_surface_t> SvgExchange::picture() const {
    const SvgRequest& asked = request();
    return CairoOwned<cairo_surface_t>(
        cairo_image_surface_create_for_data(static_cast<unsigned char*>(memory) + pictureStart,
                                            CAIRO_FORMAT_ARGB32, asked.width, asked.height, asked.width * 4));
}

std::string SvgExchange::message() const {
    const auto& text = header().message;
    return {text.begin(), std::find(text.begin(), text.end(), '\0')};
}

void SvgExchange::setMessage(std::string_view message) {
    auto& text = header().message;
    std::size_t length = message.size();
    if (length >= text.size())
        for (length = text.size() - 1; length > 0 && isWithinCharacter(message[length]);)
            --length;
    text.fill('\0');
    message.copy(text.data(), length);
}

} // namespace SvgBackend
