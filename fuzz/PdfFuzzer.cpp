#include "platform/PageRasterLib.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include <sys/mman.h>
#include <unistd.h>

namespace {

/// A file in memory that a path leads to.
class MemoryFile {
public:
    MemoryFile(const std::uint8_t* data, std::size_t size)
        : descriptor(::memfd_create("document.pdf", MFD_CLOEXEC)) {
        if (descriptor < 0)
            std::abort();
        while (size > 0) {
            const ssize_t written = ::write(descriptor, data, size);
            if (written <= 0)
                std::abort();
            data += written;
            size -= static_cast<std::size_t>(written);
        }
    }
    ~MemoryFile() { ::close(descriptor); }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;

    std::string path() const { return "/proc/self/fd/" + std::to_string(descriptor); }

private:
    int descriptor;
};

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    return ::setenv("KESTO_PDF_TIME_LIMIT_MS", "2000", 0);
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr int side = 64;
    const MemoryFile file(data, size);
    const PageRasterLib::Pdf pdf(file.path());
    int width = 0;
    int height = 0;
    const bool hasSize = pdf.DefaultDimensions(1, width, height);
    if (hasSize && (pdf.State() != PageRasterLib::PdfState::Readable || width < 1 || height < 1))
        std::abort();
    std::array<unsigned char, std::size_t{side} * side * 4> pixels{};
    if (pdf.Rasterize(side, side, 1, pixels.data(), side * 4)) {
        for (std::size_t alpha = 3; alpha < pixels.size(); alpha += 4)
            if (pixels[alpha] != 255)
                std::abort();
    }
    return 0;
}
