#include "storage/CompoundWriter.h"

#include "storage/DirectoryBuilder.h"
#include "storage/ElementName.h"

#include <algorithm>

namespace StorageBackend {

namespace {

using namespace CompoundFormat;

/// The sector of this place stays unused, since others lock it ([MS-CFB] 2.8).
constexpr std::uint64_t rangeLockPlace = 0x7FFFFF00;

DirectoryEntry unusedEntry() {
    DirectoryEntry entry = {};
    entry.left = entry.right = entry.child = noEntry;
    return entry;
}

constexpr std::uint64_t dividedUp(std::uint64_t value, std::uint64_t divisor) {
    return (value + divisor - 1) / divisor;
}

} // namespace

bool NameOrder::operator()(const std::u16string& left, const std::u16string& right) const {
    return compareNames(left, right) < 0;
}

CompoundWriter::CompoundWriter(const std::string& path, std::uint32_t sectorShift)
    : file(path, SystemBackend::AtomicFile::Writing::AtPlaces)
    , shift(sectorShift) {
    put(0, std::vector<std::byte>(sectorSize())); // whether it can be written at all shows now
}

HRESULT CompoundWriter::state() const {
    if (committed)
        return STG_E_REVERTED;
    return file.good() ? S_OK : resultOfErrno(file.error());
}

std::uint64_t CompoundWriter::largestStream() const {
    return shift == 9 ? std::uint64_t{1} << 31U : std::uint64_t{largestSector} << shift; // [MS-CFB] 2.6.1
}

bool CompoundWriter::put(std::uint64_t place, std::span<const std::byte> bytes) {
    return file.writeAt(static_cast<std::int64_t>(place), bytes);
}

std::uint32_t CompoundWriter::allocateSector(std::uint32_t previous) {
    const auto isLocked = [this](std::uint64_t place) {
        return place <= rangeLockPlace && rangeLockPlace < place + sectorSize();
    };
    if (isLocked(placeOf(static_cast<std::uint32_t>(fat.size()))))
        fat.push_back(endOfChain);
    const auto sector = static_cast<std::uint32_t>(fat.size());
    fat.push_back(endOfChain);
    if (previous != endOfChain)
        fat[previous] = sector;
    return sector;
}

HRESULT CompoundWriter::reserve(NewElement& stream, std::uint64_t size) {
    const std::uint64_t needed = dividedUp(size, sectorSize());
    if (size > largestStream() || fat.size() + needed - stream.sectors.size() > largestSector / 2)
        return STG_E_MEDIUMFULL;
    while (stream.sectors.size() < needed)
        stream.sectors.push_back(allocateSector(stream.sectors.empty() ? endOfChain : stream.sectors.back()));
    return S_OK;
}

HRESULT CompoundWriter::grow(NewElement& stream, std::uint64_t size) {
    if (const HRESULT result = state(); FAILED(result))
        return result;
    if (size < miniStreamCutoff) {
        stream.small.resize(static_cast<std::size_t>(size));
        stream.size = size;
        return S_OK;
    }
    if (const HRESULT reserved = reserve(stream, size); FAILED(reserved))
        return reserved;
    // What was never written reads as zeros.
    if (!stream.small.empty() && !writeSectors(stream, 0, stream.small))
        return state();
    std::vector<std::byte>().swap(stream.small);
    stream.size = size;
    return S_OK;
}

HRESULT CompoundWriter::write(NewElement& stream, std::uint64_t offset, std::span<const std::byte> bytes) {
    if (const HRESULT result = state(); FAILED(result))
        return result;
    if (offset + bytes.size() > stream.size) {
        if (const HRESULT grown = grow(stream, offset + bytes.size()); FAILED(grown))
            return grown;
    }
    if (stream.sectors.empty())
        std::copy(bytes.begin(), bytes.end(), stream.small.begin() + static_cast<std::ptrdiff_t>(offset));
    else
        writeSectors(stream, offset, bytes);
    return state();
}

bool CompoundWriter::writeSectors(const NewElement& stream, std::uint64_t offset,
                                  std::span<const std::byte> bytes) {
    const auto& sectors = stream.sectors;
    while (!bytes.empty() && file.good()) {
        const auto first = static_cast<std::size_t>(offset >> shift);
        const std::uint64_t inside = offset & (sectorSize() - 1);
        std::size_t behind = first + 1; // of neighbours in the file
        while (behind < sectors.size() && sectors[behind] == sectors[behind - 1] + 1)
            ++behind;
        const std::uint64_t room = (std::uint64_t{behind - first} << shift) - inside;
        const auto piece = bytes.first(static_cast<std::size_t>(std::min<std::uint64_t>(bytes.size(), room)));
        put(placeOf(sectors[first]) + inside, piece);
        offset += piece.size();
        bytes = bytes.subspan(piece.size());
    }
    return file.good();
}

Result<std::uint32_t> CompoundWriter::writeChain(std::span<const std::byte> bytes, std::uint8_t filler) {
    NewElement chain;
    chain.size = dividedUp(bytes.size(), sectorSize()) * sectorSize();
    if (bytes.empty())
        return endOfChain;
    if (const HRESULT reserved = reserve(chain, chain.size); FAILED(reserved))
        return tl::unexpected(reserved);
    writeSectors(chain, 0, bytes);
    const std::vector<std::byte> rest(static_cast<std::size_t>(chain.size - bytes.size()), std::byte{filler});
    writeSectors(chain, bytes.size(), rest);
    return chain.sectors.front();
}

HRESULT CompoundWriter::commit() {
    if (const HRESULT result = state(); FAILED(result))
        return result;
    Header header = {};
    if (auto written = writeDirectory(header); !written)
        return written.error();
    writeTables(header);
    writeHeader(header);
    committed = file.commit();
    return committed ? S_OK : resultOfErrno(file.error());
}

Result<void> CompoundWriter::writeDirectory(Header& header) {
    NewDirectory directory = buildDirectory(rootElement);
    const auto miniTable = writeChain(std::as_bytes(std::span(directory.miniTable)), 0xFF);
    const auto miniStream = writeChain(directory.miniStream, 0);
    if (!miniTable || !miniStream)
        return tl::unexpected(STG_E_MEDIUMFULL);
    directory.entries[0].firstSector = *miniStream;
    const std::size_t perSector = sectorSize() / sizeof(DirectoryEntry);
    const std::size_t sectors = dividedUp(directory.entries.size(), perSector);
    directory.entries.resize(sectors * perSector, unusedEntry());
    const auto first = writeChain(std::as_bytes(std::span(directory.entries)), 0);
    if (!first)
        return tl::unexpected(first.error());
    header.firstMiniFatSector = *miniTable;
    header.miniFatSectors =
        static_cast<std::uint32_t>(dividedUp(directory.miniTable.size() * 4, sectorSize()));
    header.firstDirectorySector = *first;
    header.directorySectors = shift == 9 ? 0 : static_cast<std::uint32_t>(sectors); // [MS-CFB] 2.2
    return {};
}

/// The tables count the sectors that they lie in themselves.
void CompoundWriter::writeTables(Header& header) {
    const std::uint32_t perSector = sectorSize() / 4;
    const std::size_t others = fat.size();
    std::size_t tables = 0;
    std::size_t lists = 0;
    for (std::size_t before = 1; before != tables + lists;) {
        before = tables + lists;
        tables = dividedUp(others + tables + lists + 1, perSector); // one more for a sector that is left out
        lists = tables > fatSectorsInHeader ? dividedUp(tables - fatSectorsInHeader, perSector - 1) : 0;
    }
    std::vector<std::uint32_t> places;
    std::vector<std::uint32_t> listPlaces;
    while (places.size() < tables)
        fat[places.emplace_back(allocateSector(endOfChain))] = fatSector;
    while (listPlaces.size() < lists)
        fat[listPlaces.emplace_back(allocateSector(endOfChain))] = difatSector;
    fat.resize(tables * perSector, freeSector);
    for (std::size_t table = 0; table < tables; ++table)
        put(placeOf(places[table]), std::as_bytes(std::span(fat).subspan(table * perSector, perSector)));
    header.fatSectors = static_cast<std::uint32_t>(tables);
    header.difatSectors = static_cast<std::uint32_t>(lists);
    header.firstDifatSector = lists > 0 ? listPlaces.front() : endOfChain;
    places.resize(fatSectorsInHeader + lists * (perSector - 1), freeSector);
    std::copy_n(places.begin(), fatSectorsInHeader, header.difat.begin());
    writeLists(listPlaces, std::span(places).subspan(fatSectorsInHeader));
}

/// Each list ends with the place of the next.
void CompoundWriter::writeLists(std::span<const std::uint32_t> lists, std::span<const std::uint32_t> places) {
    const std::size_t perList = sectorSize() / 4 - 1;
    for (std::size_t list = 0; list < lists.size(); ++list) {
        const auto own = places.subspan(list * perList, perList);
        std::vector<std::uint32_t> entries(own.begin(), own.end());
        entries.push_back(list + 1 < lists.size() ? lists[list + 1] : endOfChain);
        put(placeOf(lists[list]), std::as_bytes(std::span(entries)));
    }
}

void CompoundWriter::writeHeader(Header& header) {
    header.signature = signature;
    header.minorVersion = 0x3E;
    header.majorVersion = shift == 9 ? 3 : 4;
    header.byteOrder = 0xFFFE;
    header.sectorShift = static_cast<std::uint16_t>(shift);
    header.miniSectorShift = 6;
    header.miniStreamCutoff = miniStreamCutoff;
    put(0, std::as_bytes(std::span(&header, 1)));
}

} // namespace StorageBackend
