#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace StorageBackend {

/// The Compound File Binary File Format, [MS-CFB], section numbers in brackets. All numbers are
/// little-endian, as the machines this runs on are.
namespace CompoundFormat {

constexpr std::array<std::uint8_t, 8> signature = {0xD0, 0xCF, 0x11, 0xE0, 0xA1, 0xB1, 0x1A, 0xE1};

// Sector numbers with a meaning [2.1].
constexpr std::uint32_t largestSector = 0xFFFFFFFA;
constexpr std::uint32_t difatSector = 0xFFFFFFFC;
constexpr std::uint32_t fatSector = 0xFFFFFFFD;
constexpr std::uint32_t endOfChain = 0xFFFFFFFE;
constexpr std::uint32_t freeSector = 0xFFFFFFFF;
constexpr std::uint32_t noEntry = 0xFFFFFFFF;

constexpr std::uint32_t miniSectorSize = 64;
constexpr std::uint32_t miniStreamCutoff = 4096;
constexpr std::size_t fatSectorsInHeader = 109;
constexpr std::size_t largestNameLength = 31;

/// The header [2.2], 512 bytes; the rest of a larger first sector is zero.
struct Header {
    std::array<std::uint8_t, 8> signature;
    std::array<std::uint8_t, 16> clsid;
    std::uint16_t minorVersion;
    std::uint16_t majorVersion;
    std::uint16_t byteOrder;
    std::uint16_t sectorShift;
    std::uint16_t miniSectorShift;
    std::array<std::uint8_t, 6> reserved;
    std::uint32_t directorySectors; // of version 4 alone
    std::uint32_t fatSectors;
    std::uint32_t firstDirectorySector;
    std::uint32_t transaction;
    std::uint32_t miniStreamCutoff;
    std::uint32_t firstMiniFatSector;
    std::uint32_t miniFatSectors;
    std::uint32_t firstDifatSector;
    std::uint32_t difatSectors;
    std::array<std::uint32_t, fatSectorsInHeader> difat;
};
static_assert(sizeof(Header) == 512);

enum class EntryType : std::uint8_t { Unused = 0, Storage = 1, Stream = 2, Root = 5 };
enum class EntryColor : std::uint8_t { Red = 0, Black = 1 };

#pragma pack(push, 4)
/// A directory entry [2.6.1].
struct DirectoryEntry {
    std::array<char16_t, largestNameLength + 1> name;
    std::uint16_t nameBytes; // with the terminator
    EntryType type;
    EntryColor color;
    std::uint32_t left;
    std::uint32_t right;
    std::uint32_t child;
    std::array<std::uint8_t, 16> clsid;
    std::uint32_t stateBits;
    std::uint64_t created;
    std::uint64_t modified;
    std::uint32_t firstSector;
    std::uint64_t size;
};
#pragma pack(pop)
static_assert(sizeof(DirectoryEntry) == 128);
static_assert(offsetof(DirectoryEntry, size) == 120);

} // namespace CompoundFormat

} // namespace StorageBackend
