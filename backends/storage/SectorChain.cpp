#include "storage/SectorChain.h"

#include <algorithm>
#include <bit>

namespace StorageBackend {

using namespace CompoundFormat;

SectorChain::SectorChain(std::shared_ptr<const SectorFile> opened, std::uint32_t firstSector)
    : sectorFile(std::move(opened))
    , first(firstSector)
    , landmark(endOfChain) {}

Result<void> SectorChain::read(std::uint64_t offset, std::span<std::byte> out) {
    const std::uint64_t sectorSize = sectorFile->sectorSize();
    if (out.empty())
        return {};
    if (auto extended = extendTo((offset + out.size() - 1) / sectorSize + 1); !extended)
        return extended;
    while (!out.empty()) {
        const Run& run = runAt(offset / sectorSize);
        const std::uint64_t inside = offset - run.first * sectorSize;
        const std::uint64_t left = run.count * sectorSize - inside;
        const auto piece = out.first(static_cast<std::size_t>(std::min<std::uint64_t>(out.size(), left)));
        if (auto got = sectorFile->read(run.sector, inside, piece); !got)
            return got;
        offset += piece.size();
        out = out.subspan(piece.size());
    }
    return {};
}

Result<std::uint64_t> SectorChain::findLength(std::uint64_t most) {
    while (known * sectorFile->sectorSize() <= most) {
        const auto next = behindLast();
        if (!next)
            return tl::unexpected(next.error());
        if (*next == endOfChain)
            return known * sectorFile->sectorSize();
        if (auto appended = append(*next); !appended)
            return tl::unexpected(appended.error());
    }
    return tl::unexpected(STG_E_INSUFFICIENTMEMORY);
}

Result<void> SectorChain::extendTo(std::uint64_t sectors) {
    while (known < sectors) {
        const auto next = behindLast();
        if (!next)
            return tl::unexpected(next.error());
        if (auto appended = append(*next); !appended)
            return appended;
    }
    return {};
}

Result<void> SectorChain::append(std::uint32_t sector) {
    if (sector >= sectorFile->sectorCount() || sector == landmark)
        return corrupt();
    const bool continues = !runs.empty() && runs.back().sector + runs.back().count == sector;
    if (continues)
        ++runs.back().count;
    else
        runs.push_back({known, sector, 1});
    ++known;
    // R. P. Brent's search for cycles: the landmark moves on at each power of two.
    if (std::has_single_bit(known))
        landmark = sector;
    return {};
}

Result<std::uint32_t> SectorChain::behindLast() {
    if (runs.empty())
        return first;
    const std::uint32_t last = runs.back().sector + runs.back().count - 1;
    const std::uint32_t ordinal = last / sectorFile->entriesPerSector();
    if (tableOrdinal != ordinal) {
        tableOrdinal.reset();
        if (auto got = sectorFile->readTable(ordinal, table); !got)
            return tl::unexpected(got.error());
        tableOrdinal = ordinal;
    }
    return table[last % sectorFile->entriesPerSector()];
}

const SectorChain::Run& SectorChain::runAt(std::uint64_t ordinal) const {
    const auto behind =
        std::upper_bound(runs.begin(), runs.end(), ordinal,
                         [](std::uint64_t place, const Run& run) { return place < run.first; });
    return *std::prev(behind);
}

} // namespace StorageBackend
