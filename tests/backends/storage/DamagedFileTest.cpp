#include "backends/storage/CompoundFiles.h"
#include "storage/CompoundFormat.h"

#include <cstring>
#include <filesystem>
#include <functional>

using namespace StorageBackend;
using namespace StorageBackend::CompoundFormat;

namespace {

/// A small sound file, to be damaged in memory and then read.
class DamagedFile : public ::testing::Test {
protected:
    DamagedFile() {
        const std::string path = folder / "sound";
        const StoragePtr storage = createStorage(path);
        addStream(*storage, L"large", pattern(5000));
        addStream(*storage, L"small", pattern(200));
        EXPECT_EQ(storage->Commit(STGC_DEFAULT), S_OK);
        bytes = fileContent(path);
    }

    template <typename T>
    T& at(std::size_t place) {
        return *reinterpret_cast<T*>(bytes.data() + place);
    }
    Header& header() { return at<Header>(0); }
    std::size_t placeOf(std::uint32_t sector) const { return (std::size_t{sector} + 1) * 512; }
    std::uint32_t& table(std::uint32_t sector) {
        return at<std::uint32_t>(placeOf(header().difat[0]) + std::size_t{4} * sector);
    }
    DirectoryEntry& entry(std::size_t index) {
        return at<DirectoryEntry>(placeOf(header().firstDirectorySector) + index * sizeof(DirectoryEntry));
    }
    DirectoryEntry& entryOf(std::u16string_view name) {
        for (std::size_t index = 1;; ++index)
            if (std::u16string_view(entry(index).name.data()) == name)
                return entry(index);
    }

    HRESULT result() const { return resultOfReadingAll(folder.file("damaged", bytes)); }

    TempFolder folder;
    std::string bytes;
};

} // namespace

TEST_F(DamagedFile, IsSoundBeforeItIsDamaged) {
    EXPECT_EQ(result(), S_OK);
}

TEST_F(DamagedFile, WithAnotherHeaderIsRefused) {
    const std::string sound = bytes;
    const std::function<void()> damages[] = {
        [this] { header().byteOrder = 0xFEFF; },      [this] { header().majorVersion = 5; },
        [this] { header().sectorShift = 31; },        [this] { header().sectorShift = 0; },
        [this] { header().miniSectorShift = 20; },    [this] { header().miniStreamCutoff = 0xFFFFFFFF; },
        [this] { bytes.resize(sizeof(Header) - 1); },
    };
    for (const auto& damage : damages) {
        bytes = sound;
        damage();
        EXPECT_EQ(result(), STG_E_INVALIDHEADER) << &damage - damages;
    }
}

TEST_F(DamagedFile, CutAnywhereIsRefusedOrReadsAsFarAsItGoes) {
    const std::string sound = bytes;
    for (std::size_t length = 0; length < sound.size(); length += 53) {
        bytes = sound.substr(0, length);
        EXPECT_LT(result(), 0) << length;
    }
}

TEST_F(DamagedFile, WithAChainThatLeadsIntoItselfEndsWithAResult) {
    const std::uint32_t first = entryOf(u"large").firstSector;
    table(first + 2) = first;
    EXPECT_EQ(result(), STG_E_DOCFILECORRUPT);
    table(first + 2) = first + 2;
    EXPECT_EQ(result(), STG_E_DOCFILECORRUPT);
    table(first) = first;
    EXPECT_EQ(result(), STG_E_DOCFILECORRUPT);
}

TEST_F(DamagedFile, WithAChainThatEndsBeforeTheStreamOrLeadsOutOfTheFileIsCorrupt) {
    const std::uint32_t first = entryOf(u"large").firstSector;
    for (const std::uint32_t next : {endOfChain, freeSector, fatSector, 1000U, largestSector}) {
        table(first + 3) = next;
        EXPECT_EQ(result(), STG_E_DOCFILECORRUPT) << next;
    }
}

TEST_F(DamagedFile, ReadsWhatLiesBeforeTheDamage) {
    table(entryOf(u"large").firstSector + 3) = 1000;
    const StoragePtr storage = openStorage(folder.file("damaged", bytes));
    const StreamPtr stream = openStream(*storage, L"large");
    EXPECT_EQ(readOn(*stream, 2000), pattern(5000).substr(0, 2000));
    std::string rest(3000, '\0');
    ULONG got = 1;
    EXPECT_EQ(stream->Read(rest.data(), 3000, &got), STG_E_DOCFILECORRUPT);
    EXPECT_EQ(got, 0U);
    EXPECT_EQ(contentOf(*storage, L"small"), pattern(200));
}

TEST_F(DamagedFile, WithASizeThatItCannotHoldIsNotBelieved) {
    for (const std::uint64_t size :
         {std::uint64_t{0xFFFFFFFF}, std::uint64_t{0x7FFFFFFF}, std::uint64_t{1'000'000}}) {
        entryOf(u"large").size = size;
        StreamPtr stream;
        EXPECT_EQ(streamResult(*openStorage(folder.file("damaged", bytes)), L"large", stream),
                  STG_E_DOCFILECORRUPT);
    }
}

TEST_F(DamagedFile, OfVersionThreeMayHaveAnythingInTheUpperHalfOfASize) {
    entryOf(u"large").size |= std::uint64_t{0xDEADBEEF} << 32U;
    EXPECT_EQ(result(), S_OK);
}

TEST_F(DamagedFile, WithASmallStreamOutsideOfThoseIsCorrupt) {
    const std::uint32_t first = entryOf(u"small").firstSector;
    entryOf(u"small").firstSector = 1000;
    EXPECT_EQ(result(), STG_E_DOCFILECORRUPT);
    entryOf(u"small").firstSector = first;
    const std::size_t miniTable = placeOf(header().firstMiniFatSector);
    for (const std::uint32_t next : {endOfChain, freeSector, 5000U}) {
        at<std::uint32_t>(miniTable + std::size_t{4} * first) = next;
        EXPECT_EQ(result(), STG_E_DOCFILECORRUPT);
    }
}

TEST_F(DamagedFile, WithATreeThatMeetsAnEntryTwiceIsCorrupt) {
    const std::string sound = bytes;
    const std::function<void()> damages[] = {
        [this] { entry(1).left = 1; },
        [this] { entry(2).left = 1, entry(1).left = 2; },
        [this] { entry(1).right = 0; },
        [this] { entry(0).child = 0; },
        [this] { entry(1).type = EntryType::Storage, entry(1).child = 1; },
        [this] { entry(1).left = 77; },
        [this] { entry(1).type = EntryType::Unused, entry(2).type = EntryType::Unused; },
        [this] { entry(1).nameBytes = 66, entry(2).nameBytes = 66; },
        [this] { entry(1).nameBytes = 0, entry(2).nameBytes = 0; },
        [this] { entry(0).type = EntryType::Storage; },
    };
    for (const auto& damage : damages) {
        bytes = sound;
        damage();
        EXPECT_EQ(result(), STG_E_DOCFILECORRUPT) << &damage - damages;
    }
}

TEST_F(DamagedFile, WithTablesThatAreMissingOrNamedTwiceIsCorrupt) {
    header().difat[0] = 5000;
    EXPECT_EQ(result(), STG_E_DOCFILECORRUPT);
    header().difat[0] = 0;
    header().fatSectors = 0;
    EXPECT_EQ(result(), STG_E_DOCFILECORRUPT);
}

TEST_F(DamagedFile, WithItsDirectoryNowhereIsCorrupt) {
    for (const std::uint32_t sector : {5000U, endOfChain, freeSector}) {
        header().firstDirectorySector = sector;
        EXPECT_EQ(result(), STG_E_DOCFILECORRUPT);
    }
}

TEST_F(DamagedFile, WithOneByteOfItsTablesChangedEndsWithAResult) {
    const std::string sound = bytes;
    const std::size_t tables[] = {0, placeOf(header().difat[0]), placeOf(header().firstDirectorySector),
                                  placeOf(header().firstMiniFatSector)};
    for (const std::size_t start : tables)
        for (std::size_t place = start; place < start + 160; place += 3)
            for (const int value : {0x00, 0x01, 0xFF}) {
                bytes = sound;
                bytes[place] = static_cast<char>(value);
                const HRESULT outcome = result();
                EXPECT_TRUE(outcome == S_OK || outcome == STG_E_DOCFILECORRUPT ||
                            outcome == STG_E_INVALIDHEADER || outcome == STG_E_FILEALREADYEXISTS)
                    << place << ", " << outcome;
            }
}

TEST(DeepTree, OfManyElementsInOneLineIsRead) {
    const TempFolder folder;
    constexpr int count = 20'000;
    {
        const StoragePtr storage = createStorage(folder / "f");
        for (int number = 0; number < count; ++number)
            addStream(*storage, wide("s" + std::to_string(number)), "");
        ASSERT_EQ(storage->Commit(STGC_DEFAULT), S_OK);
    }
    std::string bytes = fileContent(folder / "f");
    Header header = {};
    std::memcpy(&header, bytes.data(), sizeof header);
    // The directory is in one piece; its tree becomes a list to the right.
    for (std::uint32_t index = 0; index <= count; ++index) {
        const std::size_t place =
            (std::size_t{header.firstDirectorySector} + 1) * 512 + std::size_t{index} * 128;
        const std::uint32_t links[3] = {noEntry, index == 0 || index == count ? noEntry : index + 1,
                                        index == 0 ? 1 : noEntry};
        std::memcpy(bytes.data() + place + offsetof(DirectoryEntry, left), links, sizeof links);
    }
    EXPECT_EQ(namesIn(*openStorage(folder.file("deep", bytes))).size(), count);
}

TEST(LongDirectory, IsGivenUpBehindAMillionElementsWhateverFollows) {
    constexpr std::uint32_t tables = 33;
    constexpr std::uint32_t directorySectors = (1U << 20U) / 32 + 1;
    Header header = {};
    header.signature = signature;
    header.majorVersion = 4;
    header.byteOrder = 0xFFFE;
    header.sectorShift = 12;
    header.miniSectorShift = 6;
    header.miniStreamCutoff = miniStreamCutoff;
    header.fatSectors = tables;
    header.firstDirectorySector = tables;
    header.firstMiniFatSector = header.firstDifatSector = endOfChain;
    std::vector<std::uint32_t> table(std::size_t{tables} * 1024, freeSector);
    for (std::uint32_t sector = 0; sector < tables; ++sector) {
        header.difat[sector] = sector;
        table[sector] = fatSector;
    }
    for (std::uint32_t sector = tables; sector < tables + directorySectors; ++sector)
        table[sector] = sector + 1; // the last leads out of the file
    std::string bytes(4096, '\0');
    std::memcpy(bytes.data(), &header, sizeof header);
    bytes.append(reinterpret_cast<const char*>(table.data()), table.size() * 4);
    const TempFolder folder;
    const std::string path = folder.file("long", bytes);
    std::filesystem::resize_file(path, (1 + std::uint64_t{tables} + directorySectors) * 4096);
    StoragePtr storage;
    EXPECT_EQ(openResult(path, storage), STG_E_INSUFFICIENTMEMORY);
}
