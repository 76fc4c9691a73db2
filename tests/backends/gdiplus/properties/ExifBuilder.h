#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace GdiplusBackend {

enum class FileOrder { Intel, Motorola };

/// Writes Exif blocks from the TIFF header on (CIPA DC-008, 4.5).
class ExifBuilder {
public:
    explicit ExifBuilder(FileOrder fileOrder)
        : order(fileOrder) {}

    /// Which directory later entries go to.
    ExifBuilder& primary() { return into(0); }
    ExifBuilder& exif() { return into(1); }
    ExifBuilder& gps() { return into(2); }
    ExifBuilder& interoperability() { return into(3); }

    ExifBuilder& ascii(std::uint16_t tag, std::string_view text);
    ExifBuilder& shorts(std::uint16_t tag, const std::vector<std::uint32_t>& values);
    ExifBuilder& longs(std::uint16_t tag, const std::vector<std::uint32_t>& values);
    ExifBuilder& rational(std::uint16_t tag, std::uint32_t numerator, std::uint32_t denominator);
    /// An entry of any type; `bytes` are put as they are.
    ExifBuilder& raw(std::uint16_t tag, std::uint16_t type, std::uint32_t count, std::string bytes);

    std::vector<std::byte> build() const;

private:
    struct Entry {
        std::uint16_t tag;
        std::uint16_t type;
        std::uint32_t count;
        std::string bytes;
    };

    ExifBuilder& into(std::size_t directory) {
        current = directory;
        return *this;
    }
    std::string word(std::uint32_t value, std::size_t bytes) const;
    void putDirectory(std::string& block, const std::vector<Entry>& entries) const;

    FileOrder order;
    std::size_t current = 0;
    std::vector<std::vector<Entry>> directories = std::vector<std::vector<Entry>>(4);
};

} // namespace GdiplusBackend
