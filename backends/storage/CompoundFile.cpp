#include "storage/CompoundFile.h"

#include "storage/DirectoryTree.h"
#include "storage/ElementName.h"

#include <algorithm>

namespace StorageBackend {

using namespace CompoundFormat;

Result<std::shared_ptr<CompoundFile>> CompoundFile::open(const std::string& path) {
    auto sectors = SectorFile::open(path);
    if (!sectors)
        return tl::unexpected(sectors.error());
    std::shared_ptr<CompoundFile> opened(new CompoundFile(std::move(*sectors)));
    if (auto read = opened->readDirectory(); !read)
        return tl::unexpected(read.error());
    return opened;
}

CompoundFile::CompoundFile(std::shared_ptr<const SectorFile> opened)
    : file(std::move(opened))
    , miniTable(file, file->header().firstMiniFatSector)
    , miniStream(file, endOfChain) {}

Result<void> CompoundFile::readDirectory() {
    SectorChain directory(file, file->header().firstDirectorySector);
    const auto length = directory.findLength(largestElementCount * sizeof(DirectoryEntry));
    if (!length)
        return tl::unexpected(length.error());
    std::vector<DirectoryEntry> entries(static_cast<std::size_t>(*length / sizeof(DirectoryEntry)));
    if (auto read = directory.read(0, std::as_writable_bytes(std::span(entries))); !read)
        return read;
    auto tree = readDirectoryTree(entries, file->header().majorVersion);
    if (!tree)
        return tl::unexpected(tree.error());
    elements = std::move(*tree);
    const MutexLock held(miniLock);
    miniStream = SectorChain(file, elements[root].firstSector);
    return {};
}

const Element* CompoundFile::find(const Element& storage, std::u16string_view name) const {
    const auto& children = storage.children;
    const auto found = std::lower_bound(children.begin(), children.end(), name,
                                        [this](std::uint32_t child, std::u16string_view wanted) {
                                            return compareNames(elements[child].name, wanted) < 0;
                                        });
    const bool isThere = found != children.end() && compareNames(elements[*found].name, name) == 0;
    return isThere ? &elements[*found] : nullptr;
}

Result<std::vector<BYTE>> CompoundFile::readSmall(const Element& stream) {
    std::vector<BYTE> bytes(static_cast<std::size_t>(stream.size));
    const MutexLock held(miniLock);
    std::uint32_t sector = stream.firstSector;
    for (std::span<BYTE> left = bytes; !left.empty();) {
        const auto piece = left.first(std::min<std::size_t>(left.size(), miniSectorSize));
        const std::uint64_t place = std::uint64_t{sector} * miniSectorSize;
        if (place + piece.size() > elements[root].size)
            return corrupt();
        if (auto got = miniStream.read(place, std::as_writable_bytes(piece)); !got)
            return tl::unexpected(got.error());
        left = left.subspan(piece.size());
        if (left.empty())
            break;
        const auto next = nextMiniSector(sector);
        if (!next)
            return tl::unexpected(next.error());
        sector = *next;
    }
    return bytes;
}

Result<std::uint32_t> CompoundFile::nextMiniSector(std::uint32_t sector) {
    std::uint32_t next = 0;
    if (auto got =
            miniTable.read(std::uint64_t{sector} * sizeof next, std::as_writable_bytes(std::span(&next, 1)));
        !got)
        return tl::unexpected(got.error());
    return next;
}

} // namespace StorageBackend
