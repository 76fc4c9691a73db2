#pragma once

#include "storage/SectorChain.h"

#include "platform/Threading.h"

#include <string_view>

namespace StorageBackend {

/// An element of a compound file as its directory tells.
struct Element {
    std::u16string name;
    CompoundFormat::EntryType type = CompoundFormat::EntryType::Unused;
    CLSID clsid = {};
    DWORD stateBits = 0;
    UINT64 created = 0;
    UINT64 modified = 0;
    std::uint32_t firstSector = 0;
    std::uint64_t size = 0;
    std::vector<std::uint32_t> children; ///< in the order of `compareNames`

    bool isStream() const { return type == CompoundFormat::EntryType::Stream; }
};

/// A compound file with its directory in memory. Any thread.
class CompoundFile {
public:
    static constexpr std::size_t largestElementCount = std::size_t{1} << 20U;

    /// `path` is a resolved one.
    static Result<std::shared_ptr<CompoundFile>> open(const std::string& path);

    static constexpr std::uint32_t root = 0;
    const Element& element(std::uint32_t index) const { return elements[index]; }
    /// The child of that name, ignoring case; null without one.
    const Element* find(const Element& storage, std::u16string_view name) const;

    /// Whether the stream lies in the mini stream, in pieces smaller than a sector.
    static bool isSmall(const Element& stream) { return stream.size < CompoundFormat::miniStreamCutoff; }
    /// All of a small stream.
    Result<std::vector<BYTE>> readSmall(const Element& stream);
    const std::shared_ptr<const SectorFile>& sectors() const { return file; }

private:
    explicit CompoundFile(std::shared_ptr<const SectorFile> opened);

    Result<void> readDirectory();
    Result<std::uint32_t> nextMiniSector(std::uint32_t sector) KESTO_REQUIRES(miniLock);

    std::shared_ptr<const SectorFile> file;
    std::vector<Element> elements;

    Mutex miniLock; // held while small streams are read: their chains are found out on the way
    SectorChain miniTable KESTO_GUARDED_BY(miniLock);
    SectorChain miniStream KESTO_GUARDED_BY(miniLock);
};

} // namespace StorageBackend
