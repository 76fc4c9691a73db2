#pragma once

#include "storage/CompoundFormat.h"
#include "storage/StorageError.h"

#include "system/FileDescriptor.h"

#include <memory>
#include <span>
#include <string>
#include <vector>

namespace StorageBackend {

/// A compound file as its sectors, and the table of which sector follows which. Immutable once open; any
/// number of threads may read.
class SectorFile {
public:
    /// `path` is a resolved one.
    static Result<std::shared_ptr<const SectorFile>> open(const std::string& path);

    const CompoundFormat::Header& header() const { return head; }
    std::uint32_t sectorSize() const { return 1U << head.sectorShift; }
    /// Those that the file's length has room for; the last may be cut short.
    std::uint32_t sectorCount() const { return sectors; }
    /// All that can lie in sectors.
    std::uint64_t capacity() const { return std::uint64_t{sectors} << head.sectorShift; }

    /// Fills `out` from a place inside consecutive sectors.
    Result<void> read(std::uint32_t sector, std::uint64_t offset, std::span<std::byte> out) const;

    /// The entries of one sector of the table; `ordinal` is a sector's number divided by their number.
    Result<void> readTable(std::uint32_t ordinal, std::vector<std::uint32_t>& entries) const;
    std::uint32_t entriesPerSector() const { return sectorSize() / 4; }

private:
    SectorFile(SystemBackend::FileDescriptor opened, std::uint64_t bytes)
        : file(std::move(opened))
        , length(bytes) {}

    Result<void> readAt(std::uint64_t place, std::span<std::byte> out) const;
    Result<void> readHeader();
    Result<void> readTablePlaces();

    SystemBackend::FileDescriptor file;
    std::uint64_t length;
    CompoundFormat::Header head = {};
    std::uint32_t sectors = 0;
    std::vector<std::uint32_t> tablePlaces; ///< the sectors that the table lies in
};

} // namespace StorageBackend
