#pragma once

#include <cstdint>
#include <string>

/// What the readers of MP4 files ask of a platform. All but `open` need an open file, and all throw
/// `MP4ParseException` when they fail. One thread at a time.
class IStreamReader {
public:
    virtual ~IStreamReader() = default;

    virtual void open(const std::wstring& path) = 0;
    /// All of `count` bytes; fewer, as at the end of the file, are a failure.
    virtual void read(void* buffer, std::uint64_t count) = 0;
    virtual std::uint64_t size() = 0;
    /// From the start of the file; a place beyond its end is none to read from, but no failure.
    virtual void seek(std::uint64_t position) = 0;
    virtual std::uint64_t tell() = 0;
};
