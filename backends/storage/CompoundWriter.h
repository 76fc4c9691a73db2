#pragma once

#include "storage/CompoundFormat.h"
#include "storage/StorageError.h"

#include "system/AtomicFile.h"

#include <map>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace StorageBackend {

/// The order of `compareNames`.
struct NameOrder {
    bool operator()(const std::u16string& left, const std::u16string& right) const;
};

/// An element of a file that is being written. Those inside one another belong to it alone.
struct NewElement {
    bool isStream = false;
    std::uint64_t size = 0;
    std::vector<std::byte> small;       ///< all of a stream below `miniStreamCutoff`
    std::vector<std::uint32_t> sectors; ///< of any other
    std::map<std::u16string, std::unique_ptr<NewElement>, NameOrder> children;
};

/// A compound file on its way to the disk: large streams lie there already, in sectors as they came; what
/// leads to them is written at the end. One thread at a time.
class CompoundWriter {
public:
    /// `path` is a resolved one.
    CompoundWriter(const std::string& path, std::uint32_t sectorShift);

    NewElement& root() { return rootElement; }

    /// Whether the file can take more: S_OK, `STG_E_REVERTED` once it is committed, or why writing failed.
    HRESULT state() const;
    HRESULT write(NewElement& stream, std::uint64_t offset, std::span<const std::byte> bytes);
    /// With zeros at the end; `size` is not below the stream's.
    HRESULT grow(NewElement& stream, std::uint64_t size);
    HRESULT commit();

private:
    std::uint32_t sectorSize() const { return 1U << shift; }
    std::uint64_t largestStream() const;
    std::uint64_t placeOf(std::uint32_t sector) const { return (std::uint64_t{sector} + 1) << shift; }

    bool put(std::uint64_t place, std::span<const std::byte> bytes);
    std::uint32_t allocateSector(std::uint32_t previous);
    HRESULT reserve(NewElement& stream, std::uint64_t size);
    bool writeSectors(const NewElement& stream, std::uint64_t offset, std::span<const std::byte> bytes);
    /// Writes `bytes` into sectors of their own, the last filled up with `filler`; gives the first.
    Result<std::uint32_t> writeChain(std::span<const std::byte> bytes, std::uint8_t filler);
    Result<void> writeDirectory(CompoundFormat::Header& header);
    void writeTables(CompoundFormat::Header& header);
    void writeLists(std::span<const std::uint32_t> lists, std::span<const std::uint32_t> places);
    void writeHeader(CompoundFormat::Header& header);

    SystemBackend::AtomicFile file;
    std::uint32_t shift;
    bool committed = false;
    NewElement rootElement;
    std::vector<std::uint32_t> fat; ///< of each sector so far, what follows it
};

} // namespace StorageBackend
