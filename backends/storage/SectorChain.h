#pragma once

#include "storage/SectorFile.h"

#include <optional>

namespace StorageBackend {

/// The sectors of one stream, found out only as far as they are needed, since the way to the last of millions
/// is long. One thread at a time.
class SectorChain {
public:
    SectorChain(std::shared_ptr<const SectorFile> sectorFile, std::uint32_t firstSector);

    /// Fills `out`. `STG_E_DOCFILECORRUPT` when the chain ends before, leads out of the file or into itself.
    Result<void> read(std::uint64_t offset, std::span<std::byte> out);
    /// Goes to the end; the chain's length in bytes. `STG_E_INSUFFICIENTMEMORY` for more than `most`.
    Result<std::uint64_t> findLength(std::uint64_t most);

    const std::shared_ptr<const SectorFile>& file() const { return sectorFile; }

private:
    struct Run {
        std::uint64_t first; ///< counted from the start of the chain
        std::uint32_t sector;
        std::uint32_t count;
    };

    Result<void> extendTo(std::uint64_t sectors);
    Result<void> append(std::uint32_t sector);
    Result<std::uint32_t> behindLast();
    const Run& runAt(std::uint64_t ordinal) const;

    std::shared_ptr<const SectorFile> sectorFile;
    std::uint32_t first;
    std::vector<Run> runs;
    std::uint64_t known = 0; ///< sectors in `runs`
    std::uint32_t landmark;  ///< a sector passed before: who meets it again goes in a circle

    std::optional<std::uint32_t> tableOrdinal; ///< of `table`
    std::vector<std::uint32_t> table;
};

} // namespace StorageBackend
