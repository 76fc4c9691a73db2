#pragma once

#include "gdiplus/LoadError.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace GdiplusBackend {

/// Bytes that can be read at any place. Reads do not move anything, so one source serves many readers on many
/// threads at once.
class ByteSource {
public:
    virtual ~ByteSource() = default;

    virtual std::uint64_t size() const = 0;
    /// Fills `out` from `offset` as far as there are bytes, and gives their number: short only at the end or
    /// after an error of the medium.
    virtual std::size_t read(std::uint64_t offset, std::span<std::byte> out) const = 0;
};

/// Holds a regular file open. `InvalidParameter` for a missing file or an empty name, `AccessDenied` for one
/// that can't be opened and for a folder, a pipe or a device, which are never waited for.
Result<std::shared_ptr<const ByteSource>> openFile(const wchar_t* filename);

/// A copy of `bytes`.
std::shared_ptr<const ByteSource> fromMemory(std::vector<std::byte> bytes);

/// All bytes of a source. `OutOfMemory` for more than `limit`, `Aborted` when the medium gives fewer than it
/// promised.
Result<std::vector<std::byte>> readAll(const ByteSource& source, std::uint64_t limit);

/// Reads on from a place; each codec's input callback holds one.
class ByteCursor {
public:
    explicit ByteCursor(const ByteSource& bytes, std::uint64_t position = 0)
        : source(&bytes)
        , place(position) {}

    std::size_t read(std::span<std::byte> out);
    void seek(std::uint64_t position) { place = position; }
    std::uint64_t position() const { return place; }
    std::uint64_t size() const { return source->size(); }

private:
    const ByteSource* source;
    std::uint64_t place;
};

} // namespace GdiplusBackend
