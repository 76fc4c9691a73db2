#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace EngineBackend {

/// Bytes that are read from a place which moves on: a file, or a member of another file. One thread at a
/// time.
class IByteSource {
public:
    virtual ~IByteSource() = default;

    /// Fills `into` from the place on as far as there are bytes, and gives their number: 0 at the end, below
    /// 0 after an error of the medium.
    virtual std::int64_t read(std::span<std::byte> into) = 0;
    virtual std::int64_t tell() const = 0;
    /// False when the place can't be reached; the source then stays where it is.
    virtual bool seek(std::int64_t place) = 0;
    /// In bytes; below 0 when it is not known.
    virtual std::int64_t size() const = 0;
    virtual bool canSeek() const = 0;
};

} // namespace EngineBackend
