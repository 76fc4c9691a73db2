#include "gdiplus/codecs/ByteSource.h"

#include <fmt/format.h>

#include <algorithm>

namespace GdiplusBackend {

namespace {

class MemorySource : public ByteSource {
public:
    explicit MemorySource(std::vector<std::byte> content)
        : bytes(std::move(content)) {}

    std::uint64_t size() const override { return bytes.size(); }

    std::size_t read(std::uint64_t offset, std::span<std::byte> out) const override {
        if (offset >= bytes.size())
            return 0;
        const std::size_t count = std::min(out.size(), bytes.size() - static_cast<std::size_t>(offset));
        std::copy_n(bytes.data() + offset, count, out.begin());
        return count;
    }

private:
    std::vector<std::byte> bytes;
};

} // namespace

std::shared_ptr<const ByteSource> fromMemory(std::vector<std::byte> bytes) {
    return std::make_shared<MemorySource>(std::move(bytes));
}

Result<std::vector<std::byte>> readAll(const ByteSource& source, std::uint64_t limit) {
    if (source.size() > limit)
        return tooLarge(fmt::format("{} bytes, at most {} are read at once", source.size(), limit));
    std::vector<std::byte> bytes(static_cast<std::size_t>(source.size()));
    if (source.read(0, bytes) != bytes.size())
        return truncated("the file became shorter while it was read");
    return bytes;
}

std::size_t ByteCursor::read(std::span<std::byte> out) {
    const std::size_t count = source->read(place, out);
    place += count;
    return count;
}

} // namespace GdiplusBackend
