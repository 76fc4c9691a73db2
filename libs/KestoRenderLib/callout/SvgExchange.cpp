#include "KestoRenderLib/callout/SvgExchange.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstring>
#include <new>

namespace KestoRenderLib {

namespace {

constexpr std::size_t pictureStart = 256;
static_assert(sizeof(SvgRequest) <= pictureStart);

std::size_t pictureBytes(const SvgRequest& request) {
    return std::size_t{4} * static_cast<std::size_t>(request.width) *
           static_cast<std::size_t>(request.height);
}

std::size_t bytesOf(const SvgRequest& request) {
    return pictureStart + pictureBytes(request) + request.documentBytes;
}

/// Null without memory.
void* mapped(int descriptor, std::size_t bytes) {
    void* memory = ::mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_SHARED, descriptor, 0);
    return memory == MAP_FAILED ? nullptr : memory;
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

std::optional<SvgExchange> SvgExchange::create(const SvgRequest& request, std::string_view document) {
    Descriptor file(::memfd_create("kesto-svg", MFD_CLOEXEC));
    const std::size_t bytes = bytesOf(request);
    if (!file.isOpen() || ::ftruncate(file.get(), static_cast<off_t>(bytes)) != 0)
        return std::nullopt;
    void* memory = mapped(file.get(), bytes);
    if (!memory)
        return std::nullopt;
    SvgExchange exchange(std::move(file), memory, bytes);
    new (memory) SvgRequest(request);
    std::memcpy(static_cast<char*>(memory) + bytes - document.size(), document.data(), document.size());
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
    const bool fits = request.width > 0 && request.height > 0 && bytesOf(request) == bytes;
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

std::string_view SvgExchange::document() const {
    const std::size_t length = request().documentBytes;
    return {static_cast<const char*>(memory) + bytes - length, length};
}

CairoOwned<cairo_surface_t> SvgExchange::picture() const {
    const SvgRequest& asked = request();
    return surfaceOver(
        {static_cast<unsigned char*>(memory) + pictureStart, asked.width * 4, asked.width, asked.height});
}

} // namespace KestoRenderLib
