#include "storage/ReadStream.h"

#include "storage/ElementStatus.h"

#include <algorithm>

namespace StorageBackend {

namespace {

constexpr std::uint64_t windowSize = 64U << 10U;

class ReadStream : public SystemBackend::StreamObject {
public:
    HRESULT Read(void* buffer, ULONG count, ULONG* bytesRead) override;
    HRESULT Stat(STATSTG* status, DWORD flags) override;
    HRESULT Clone(IStream** copy) override;

protected:
    ReadStream(std::shared_ptr<CompoundFile> opened, const Element& opensElement, UINT64 startPlace)
        : StreamObject(startPlace)
        , file(std::move(opened))
        , element(&opensElement) {}

    /// `out` lies inside the stream.
    virtual Result<void> readAt(UINT64 offset, std::span<std::byte> out) = 0;
    virtual IStream* copyAt(UINT64 startPlace) const = 0;
    UINT64 length() const override { return element->size; }

    std::shared_ptr<CompoundFile> file;
    const Element* element; // in `file`
};

HRESULT ReadStream::Read(void* buffer, ULONG count, ULONG* bytesRead) {
    if (bytesRead)
        *bytesRead = 0;
    if (!buffer)
        return STG_E_INVALIDPOINTER;
    return guarded([&] {
        const UINT64 left = length() - std::min(place, length());
        const auto got = static_cast<ULONG>(std::min<UINT64>(count, left));
        if (auto read = readAt(place, {static_cast<std::byte*>(buffer), got}); !read)
            return read.error();
        place += got;
        if (bytesRead)
            *bytesRead = got;
        return S_OK;
    });
}

HRESULT ReadStream::Stat(STATSTG* status, DWORD flags) {
    if (!status)
        return STG_E_INVALIDPOINTER;
    return guarded([&] {
        const HRESULT result = describe(*element, flags, *status);
        status->grfMode = STGM_SHARE_EXCLUSIVE;
        return result;
    });
}

HRESULT ReadStream::Clone(IStream** copy) {
    if (!copy)
        return STG_E_INVALIDPOINTER;
    *copy = nullptr;
    return guarded([&] {
        *copy = copyAt(place);
        return S_OK;
    });
}

class SmallStream final : public ReadStream {
public:
    using Bytes = std::shared_ptr<const std::vector<BYTE>>;

    SmallStream(std::shared_ptr<CompoundFile> opened, const Element& opensElement, Bytes content,
                UINT64 startPlace)
        : ReadStream(std::move(opened), opensElement, startPlace)
        , bytes(std::move(content)) {}

private:
    Result<void> readAt(UINT64 offset, std::span<std::byte> out) override {
        if (!out.empty())
            std::copy_n(std::as_bytes(std::span(*bytes)).begin() + static_cast<std::ptrdiff_t>(offset),
                        out.size(), out.begin());
        return {};
    }
    IStream* copyAt(UINT64 startPlace) const override {
        return new SmallStream(file, *element, bytes, startPlace);
    }

    Bytes bytes;
};

class LargeStream final : public ReadStream {
public:
    LargeStream(std::shared_ptr<CompoundFile> opened, const Element& opensElement, SectorChain sectors,
                UINT64 startPlace)
        : ReadStream(std::move(opened), opensElement, startPlace)
        , chain(std::move(sectors)) {}

private:
    Result<void> readAt(UINT64 offset, std::span<std::byte> out) override;
    Result<void> loadWindow(UINT64 offset);
    IStream* copyAt(UINT64 startPlace) const override {
        return new LargeStream(file, *element, chain, startPlace);
    }

    SectorChain chain;
    UINT64 windowStart = 0;
    std::vector<std::byte> window; ///< the bytes at `windowStart`
};

Result<void> LargeStream::readAt(UINT64 offset, std::span<std::byte> out) {
    if (out.size() >= windowSize)
        return chain.read(offset, out);
    while (!out.empty()) {
        const bool isInside = offset >= windowStart && offset - windowStart < window.size();
        if (!isInside) {
            if (auto loaded = loadWindow(offset); !loaded)
                return chain.read(offset, out); // what is asked for may be sound
        }
        const auto from = static_cast<std::size_t>(offset - windowStart);
        const std::size_t count = std::min(out.size(), window.size() - from);
        std::copy_n(window.begin() + static_cast<std::ptrdiff_t>(from), count, out.begin());
        offset += count;
        out = out.subspan(count);
    }
    return {};
}

Result<void> LargeStream::loadWindow(UINT64 offset) {
    windowStart = offset - offset % windowSize;
    window.resize(static_cast<std::size_t>(std::min(windowSize, element->size - windowStart)));
    auto read = chain.read(windowStart, window);
    if (!read)
        window.clear();
    return read;
}

} // namespace

Result<IStream*> openStream(std::shared_ptr<CompoundFile> file, const Element& element) {
    if (!CompoundFile::isSmall(element)) {
        if (element.size > file->sectors()->capacity())
            return corrupt();
        SectorChain chain(file->sectors(), element.firstSector);
        return new LargeStream(std::move(file), element, std::move(chain), 0);
    }
    auto bytes = file->readSmall(element);
    if (!bytes)
        return tl::unexpected(bytes.error());
    return new SmallStream(std::move(file), element,
                           std::make_shared<const std::vector<BYTE>>(std::move(*bytes)), 0);
}

} // namespace StorageBackend
