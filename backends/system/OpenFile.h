#pragma once

#include "system/FileDescriptor.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>

namespace SystemBackend {

/// A plain file open for reading, and its position. Small reads are served from what was read ahead, so that
/// a parser that takes a word at a time does not pay a system call for each. One thread at a time.
class OpenFile {
public:
    /// `path` is looked up as `resolvePath` tells. What is no plain file is refused with EACCES; a pipe does
    /// not keep this waiting. Null with the reason in errno.
    static std::unique_ptr<OpenFile> open(const std::string& path);

    /// Reads on from the position, fewer bytes at the end of the file alone. None with the reason in errno;
    /// the position then stands behind what could be read.
    std::optional<std::size_t> read(std::span<std::byte> into);

    std::int64_t position() const { return place; }
    /// `position` is at least 0, and may lie beyond the end.
    void seek(std::int64_t position) { place = position; }
    /// None with the reason in errno.
    std::optional<std::int64_t> size() const;

private:
    explicit OpenFile(FileDescriptor opened)
        : descriptor(std::move(opened)) {}

    std::size_t takeAhead(std::span<std::byte> into);
    std::optional<std::size_t> readAhead();

    static constexpr std::size_t aheadSize = 4096;

    FileDescriptor descriptor;
    std::int64_t place = 0;
    std::int64_t aheadFrom = 0; ///< where in the file `ahead` lies
    std::size_t aheadCount = 0;
    std::array<std::byte, aheadSize> ahead;
};

} // namespace SystemBackend
