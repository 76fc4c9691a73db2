#include "backends/storage/CompoundFiles.h"

#include <filesystem>
#include <thread>

using namespace StorageBackend;

namespace {

class RoundTrip : public ::testing::TestWithParam<ULONG> {
protected:
    StoragePtr create() { return createStorage(path, GetParam()); }
    StoragePtr commitAndOpen(StoragePtr storage) {
        EXPECT_EQ(storage->Commit(STGC_DEFAULT), S_OK);
        storage.reset();
        return openStorage(path);
    }

    TempFolder folder;
    std::string path = folder / "file.plumex";
};

} // namespace

TEST_P(RoundTrip, KeepsStreamsOfEverySizeAroundTheLimitsOfSectors) {
    StoragePtr storage = create();
    const std::size_t sizes[] = {0,    1,    63,   64,   65,   511,   512,   513,    4095,
                                 4096, 4097, 8191, 8192, 8193, 65535, 65536, 300'000};
    for (const std::size_t size : sizes)
        addStream(*storage, wide("s" + std::to_string(size)), pattern(size));
    storage = commitAndOpen(std::move(storage));
    ASSERT_TRUE(storage);
    for (const std::size_t size : sizes)
        EXPECT_EQ(contentOf(*storage, wide("s" + std::to_string(size))), pattern(size)) << size;
}

TEST_P(RoundTrip, KeepsStoragesInStorages) {
    StoragePtr storage = create();
    {
        const StoragePtr outer = addStorage(*storage, L"Outer");
        const StoragePtr inner = addStorage(*outer, L"Inner");
        addStream(*inner, L"deep", "deep content");
        addStream(*outer, L"middle", "middle content");
        addStream(*storage, L"top", "top content");
    }
    storage = commitAndOpen(std::move(storage));
    EXPECT_EQ(namesIn(*storage), (std::vector<std::wstring>{L"top", L"Outer"}));
    IStorage* outer = nullptr;
    ASSERT_EQ(storage->OpenStorage(L"OUTER", nullptr, forReading, nullptr, 0, &outer), S_OK);
    const StoragePtr outerOwner(outer);
    EXPECT_EQ(contentOf(*outer, L"middle"), "middle content");
    IStorage* inner = nullptr;
    ASSERT_EQ(outer->OpenStorage(L"Inner", nullptr, forReading, nullptr, 0, &inner), S_OK);
    const StoragePtr innerOwner(inner);
    EXPECT_EQ(contentOf(*inner, L"deep"), "deep content");
}

TEST_P(RoundTrip, KeepsStreamsThatAreWrittenInTurns) {
    StoragePtr storage = create();
    const std::string one = pattern(50'000, 1);
    const std::string two = pattern(50'000, 2);
    {
        const StreamPtr first = createStream(*storage, L"one");
        const StreamPtr second = createStream(*storage, L"two");
        for (std::size_t at = 0; at < one.size(); at += 700) {
            const auto count = static_cast<ULONG>(std::min<std::size_t>(700, one.size() - at));
            ASSERT_EQ(first->Write(one.data() + at, count, nullptr), S_OK);
            ASSERT_EQ(second->Write(two.data() + at, count, nullptr), S_OK);
        }
    }
    storage = commitAndOpen(std::move(storage));
    EXPECT_EQ(contentOf(*storage, L"one"), one);
    EXPECT_EQ(contentOf(*storage, L"two"), two);
}

TEST_P(RoundTrip, KeepsWhatIsWrittenOverAndZerosInGaps) {
    StoragePtr storage = create();
    {
        const StreamPtr stream = createStream(*storage, L"s");
        ASSERT_EQ(stream->Write("start", 5, nullptr), S_OK);
        ASSERT_EQ(stream->Seek({10'000}, STREAM_SEEK_SET, nullptr), S_OK);
        ASSERT_EQ(stream->Write("end", 3, nullptr), S_OK);
        ASSERT_EQ(stream->Seek({1}, STREAM_SEEK_SET, nullptr), S_OK);
        ASSERT_EQ(stream->Write("TAR", 3, nullptr), S_OK);
        ASSERT_EQ(stream->SetSize({20'000}), S_OK);
        EXPECT_EQ(stream->SetSize({19'999}), STG_E_INVALIDFUNCTION);
    }
    storage = commitAndOpen(std::move(storage));
    std::string expected(20'000, '\0');
    expected.replace(0, 5, "sTARt");
    expected.replace(10'000, 3, "end");
    EXPECT_EQ(contentOf(*storage, L"s"), expected);
}

TEST_P(RoundTrip, FindsEachOfManyNamesWhateverTheirCase) {
    StoragePtr storage = create();
    for (int number = 0; number < 300; ++number)
        addStream(*storage, wide("Name_" + std::to_string(number)), std::to_string(number));
    storage = commitAndOpen(std::move(storage));
    EXPECT_EQ(namesIn(*storage).size(), 300U);
    for (int number = 0; number < 300; ++number)
        EXPECT_EQ(contentOf(*storage, wide("nAME_" + std::to_string(number))), std::to_string(number));
}

TEST_P(RoundTrip, ReadsAtRandomPlacesWhatAReadFromTheStartGives) {
    StoragePtr storage = create();
    const std::string content = pattern(700'000);
    addStream(*storage, L"s", content);
    storage = commitAndOpen(std::move(storage));
    const StreamPtr stream = openStream(*storage, L"s");
    std::uint32_t state = 7;
    for (int time = 0; time < 500; ++time) {
        state = state * 1664525U + 1013904223U;
        const std::size_t place = state % content.size();
        const std::size_t count = (state >> 8U) % (time % 50 == 0 ? 200'000U : 3000U);
        ASSERT_EQ(stream->Seek({static_cast<__int64>(place)}, STREAM_SEEK_SET, nullptr), S_OK);
        ASSERT_TRUE(readOn(*stream, static_cast<ULONG>(count)) == content.substr(place, count))
            << place << ", " << count;
    }
}

INSTANTIATE_TEST_SUITE_P(OfSectors, RoundTrip, ::testing::Values(512, 4096),
                         [](const auto& size) { return std::to_string(size.param); });

using LargeFile = RoundTrip;

TEST_P(LargeFile, HasTablesThatTheHeaderHasNoRoomFor) {
    // The header names tables for 109 * 128 sectors of 512 bytes: 7 MB.
    StoragePtr storage = create();
    const std::string content = pattern(9'000'000);
    addStream(*storage, L"large", content);
    addStream(*storage, L"behind", "it");
    storage = commitAndOpen(std::move(storage));
    EXPECT_TRUE(contentOf(*storage, L"large") == content);
    EXPECT_EQ(contentOf(*storage, L"behind"), "it");
}

TEST_P(LargeFile, LeavesTheSectorFreeThatOthersLock) {
    // Written with gaps, a file of more than two gigabytes takes little room.
    StoragePtr storage = create();
    const __int64 gigabyte = __int64{1} << 30;
    for (const wchar_t* name : {L"one", L"two", L"three"}) {
        const StreamPtr stream = createStream(*storage, name);
        ASSERT_EQ(stream->Seek({gigabyte - 3}, STREAM_SEEK_SET, nullptr), S_OK);
        ASSERT_EQ(stream->Write("end", 3, nullptr), S_OK);
    }
    storage = commitAndOpen(std::move(storage));
    ASSERT_TRUE(storage);
    EXPECT_GT(std::filesystem::file_size(path), 3 * static_cast<std::uintmax_t>(gigabyte));
    for (const wchar_t* name : {L"one", L"two", L"three"}) {
        const StreamPtr stream = openStream(*storage, name);
        ASSERT_EQ(stream->Seek({gigabyte - 5}, STREAM_SEEK_SET, nullptr), S_OK);
        EXPECT_EQ(readOn(*stream, 100), std::string("\0\0end", 5));
    }
}

INSTANTIATE_TEST_SUITE_P(OfSmallSectors, LargeFile, ::testing::Values(512),
                         [](const auto&) { return "512"; });
INSTANTIATE_TEST_SUITE_P(OfLargeSectors, LargeFile, ::testing::Values(4096),
                         [](const auto&) { return "4096"; });

TEST(ReadStream, ClonesWithAPlaceOfItsOwn) {
    const TempFolder folder;
    const std::string content = pattern(10'000);
    {
        const StoragePtr storage = createStorage(folder / "f");
        addStream(*storage, L"large", content);
        addStream(*storage, L"small", "abcdef");
        ASSERT_EQ(storage->Commit(STGC_DEFAULT), S_OK);
    }
    const StoragePtr storage = openStorage(folder / "f");
    for (const wchar_t* name : {L"large", L"small"}) {
        const StreamPtr stream = openStream(*storage, name);
        const std::string whole = contentOf(*storage, name);
        readOn(*stream, 2);
        IStream* copy = nullptr;
        ASSERT_EQ(stream->Clone(&copy), S_OK);
        const StreamPtr clone(copy);
        EXPECT_EQ(readOn(*stream, 2), whole.substr(2, 2));
        EXPECT_EQ(readOn(*clone, 3), whole.substr(2, 3));
    }
}

TEST(ReadStream, OutlivesItsStorageAndItsFilesNameAndServesOtherThreads) {
    const TempFolder folder;
    const std::string content = pattern(200'000);
    {
        const StoragePtr storage = createStorage(folder / "f");
        addStream(*storage, L"one", content);
        addStream(*storage, L"two", content);
        ASSERT_EQ(storage->Commit(STGC_DEFAULT), S_OK);
    }
    StoragePtr storage = openStorage(folder / "f");
    StreamPtr one = openStream(*storage, L"one");
    StreamPtr two = openStream(*storage, L"two");
    storage.reset();
    std::filesystem::remove(folder / "f");
    const auto readAll = [&content](StreamPtr stream) { EXPECT_TRUE(readOn(*stream, 200'000) == content); };
    std::thread first(readAll, std::move(one));
    std::thread second(readAll, std::move(two));
    first.join();
    second.join();
}

TEST(ReadStream, TellsNameAndSizeAndCannotBeWritten) {
    const TempFolder folder;
    {
        const StoragePtr storage = createStorage(folder / "f");
        addStream(*storage, L"Letters", "abc");
        ASSERT_EQ(storage->Commit(STGC_DEFAULT), S_OK);
    }
    const StoragePtr storage = openStorage(folder / "f");
    const StreamPtr stream = openStream(*storage, L"lETTERS");
    STATSTG status = {};
    ASSERT_EQ(stream->Stat(&status, STATFLAG_DEFAULT), S_OK);
    EXPECT_EQ(std::wstring(status.pwcsName), L"Letters");
    CoTaskMemFree(status.pwcsName);
    EXPECT_EQ(status.type, STGTY_STREAM);
    EXPECT_EQ(status.cbSize.QuadPart, 3U);
    EXPECT_EQ(stream->Write("x", 1, nullptr), STG_E_ACCESSDENIED);
    EXPECT_EQ(stream->SetSize({1}), STG_E_ACCESSDENIED);
}
