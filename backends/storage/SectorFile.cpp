#include "storage/SectorFile.h"

#include <algorithm>
#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace StorageBackend {

namespace {

using namespace CompoundFormat;

constexpr bool isKnown(const Header& header) {
    return header.byteOrder == 0xFFFE && (header.majorVersion == 3 || header.majorVersion == 4) &&
           (header.sectorShift == 9 || header.sectorShift == 12) && header.miniSectorShift == 6 &&
           header.miniStreamCutoff == miniStreamCutoff;
}

constexpr std::uint64_t dividedUp(std::uint64_t value, std::uint64_t divisor) {
    return (value + divisor - 1) / divisor;
}

/// Whether all lie inside the file, and none is named twice.
bool areDistinct(std::vector<std::uint32_t> places, std::uint32_t sectorCount) {
    std::sort(places.begin(), places.end());
    return std::adjacent_find(places.begin(), places.end()) == places.end() &&
           (places.empty() || places.back() < sectorCount);
}

} // namespace

HRESULT resultOfErrno(int error) {
    switch (error) {
    case ENOENT:
        return STG_E_FILENOTFOUND;
    case ENOTDIR:
    case ENAMETOOLONG:
        return STG_E_PATHNOTFOUND;
    case ENOSPC:
    case EFBIG:
    case EDQUOT:
        return STG_E_MEDIUMFULL;
    case EACCES:
    case EPERM:
    case EROFS:
    case EISDIR:
    case ELOOP:
    case ENXIO:
    case ESPIPE:
    case ETXTBSY:
        return STG_E_ACCESSDENIED;
    case ENOMEM:
        return STG_E_INSUFFICIENTMEMORY;
    default:
        return STG_E_WRITEFAULT;
    }
}

Result<std::shared_ptr<const SectorFile>> SectorFile::open(const std::string& path) {
    // Without O_NONBLOCK the open of a pipe would wait for its writer.
    SystemBackend::FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    if (!file.isOpen()) {
        const HRESULT result = resultOfErrno(errno);
        return tl::unexpected(result == STG_E_WRITEFAULT ? STG_E_READFAULT : result);
    }
    struct stat status = {};
    if (::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode))
        return tl::unexpected(STG_E_ACCESSDENIED);
    std::shared_ptr<SectorFile> opened(
        new SectorFile(std::move(file), static_cast<std::uint64_t>(status.st_size)));
    if (auto read = opened->readHeader(); !read)
        return tl::unexpected(read.error());
    if (auto read = opened->readTablePlaces(); !read)
        return tl::unexpected(read.error());
    return opened;
}

Result<void> SectorFile::readAt(std::uint64_t place, std::span<std::byte> out) const {
    while (!out.empty()) {
        const ssize_t got = ::pread(file.get(), out.data(), out.size(), static_cast<off_t>(place));
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            return tl::unexpected(STG_E_READFAULT);
        if (got == 0)
            return corrupt(); // the file ends first
        place += static_cast<std::uint64_t>(got);
        out = out.subspan(static_cast<std::size_t>(got));
    }
    return {};
}

Result<void> SectorFile::readHeader() {
    std::array<std::uint8_t, 8> found = {};
    if (length < found.size())
        return tl::unexpected(STG_E_FILEALREADYEXISTS);
    if (auto read = readAt(0, std::as_writable_bytes(std::span(found))); !read)
        return read;
    if (found != signature)
        return tl::unexpected(STG_E_FILEALREADYEXISTS);
    if (length < sizeof head)
        return tl::unexpected(STG_E_INVALIDHEADER);
    if (auto read = readAt(0, std::as_writable_bytes(std::span(&head, 1))); !read)
        return read;
    if (!isKnown(head))
        return tl::unexpected(STG_E_INVALIDHEADER);
    const std::uint64_t behindHeader = length - std::min<std::uint64_t>(length, sectorSize());
    sectors = static_cast<std::uint32_t>(
        std::min<std::uint64_t>(dividedUp(behindHeader, sectorSize()), largestSector));
    return {};
}

Result<void> SectorFile::readTablePlaces() {
    // What the header counts beyond the file's sectors would describe nothing, so it is not read.
    const auto needed = static_cast<std::size_t>(
        std::min<std::uint64_t>(head.fatSectors, dividedUp(sectors, entriesPerSector())));
    tablePlaces.assign(head.difat.begin(), head.difat.begin() + static_cast<std::ptrdiff_t>(
                                                                    std::min(needed, fatSectorsInHeader)));
    std::vector<std::uint32_t> more(entriesPerSector());
    for (std::uint32_t next = head.firstDifatSector; tablePlaces.size() < needed; next = more.back()) {
        if (next >= sectors)
            return corrupt();
        if (auto got = read(next, 0, std::as_writable_bytes(std::span(more))); !got)
            return got;
        const std::size_t count = std::min(needed - tablePlaces.size(), more.size() - 1);
        tablePlaces.insert(tablePlaces.end(), more.begin(),
                           more.begin() + static_cast<std::ptrdiff_t>(count));
    }
    if (!areDistinct(tablePlaces, sectors))
        return corrupt();
    return {};
}

Result<void> SectorFile::read(std::uint32_t sector, std::uint64_t offset, std::span<std::byte> out) const {
    return readAt(((std::uint64_t{sector} + 1) << head.sectorShift) + offset, out);
}

Result<void> SectorFile::readTable(std::uint32_t ordinal, std::vector<std::uint32_t>& entries) const {
    if (ordinal >= tablePlaces.size())
        return corrupt();
    entries.resize(entriesPerSector());
    return read(tablePlaces[ordinal], 0, std::as_writable_bytes(std::span(entries)));
}

} // namespace StorageBackend
