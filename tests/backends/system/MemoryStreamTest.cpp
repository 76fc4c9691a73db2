#include "platform/Stream.h"

#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <string>
#include <string_view>

namespace {

struct Releaser {
    void operator()(IStream* stream) const { stream->Release(); }
};
using StreamPtr = std::unique_ptr<IStream, Releaser>;

StreamPtr streamOver(std::string_view text) {
    return StreamPtr(
        SHCreateMemStream(reinterpret_cast<const BYTE*>(text.data()), static_cast<UINT>(text.size())));
}

std::string readOn(IStream& stream, ULONG count) {
    std::string text(count, '\0');
    ULONG got = 0;
    EXPECT_EQ(stream.Read(text.data(), count, &got), S_OK);
    text.resize(got);
    return text;
}

void write(IStream& stream, std::string_view text) {
    ULONG put = 0;
    EXPECT_EQ(stream.Write(text.data(), static_cast<ULONG>(text.size()), &put), S_OK);
    EXPECT_EQ(put, text.size());
}

UINT64 seek(IStream& stream, __int64 move, DWORD origin) {
    ULARGE_INTEGER place = {};
    EXPECT_EQ(stream.Seek({move}, origin, &place), S_OK);
    return place.QuadPart;
}

UINT64 sizeOf(IStream& stream) {
    STATSTG status = {};
    EXPECT_EQ(stream.Stat(&status, STATFLAG_NONAME), S_OK);
    EXPECT_EQ(status.type, STGTY_STREAM);
    return status.cbSize.QuadPart;
}

} // namespace

TEST(MemoryStream, ReadsOnFromItsPlaceAndGivesLessAtTheEndAlone) {
    const StreamPtr stream = streamOver("abcdefg");
    EXPECT_EQ(readOn(*stream, 3), "abc");
    EXPECT_EQ(readOn(*stream, 10), "defg");
    EXPECT_EQ(readOn(*stream, 10), "");
}

TEST(MemoryStream, HoldsACopyOfItsBytes) {
    std::string text = "abc";
    const StreamPtr stream = streamOver(text);
    text = "xyz";
    EXPECT_EQ(readOn(*stream, 3), "abc");
}

TEST(MemoryStream, IsEmptyWithoutInitialBytesWhateverTheirNumber) {
    const StreamPtr stream(SHCreateMemStream(nullptr, 5));
    EXPECT_EQ(sizeOf(*stream), 0U);
    EXPECT_EQ(readOn(*stream, 1), "");
}

TEST(MemoryStream, SeeksFromEachOrigin) {
    const StreamPtr stream = streamOver("abcdefg");
    EXPECT_EQ(seek(*stream, 2, STREAM_SEEK_SET), 2U);
    EXPECT_EQ(seek(*stream, 3, STREAM_SEEK_CUR), 5U);
    EXPECT_EQ(seek(*stream, -1, STREAM_SEEK_CUR), 4U);
    EXPECT_EQ(seek(*stream, -2, STREAM_SEEK_END), 5U);
    EXPECT_EQ(readOn(*stream, 9), "fg");
}

TEST(MemoryStream, RefusesPlacesBeforeItsStartAndUnknownOriginsAndStaysWhereItWas) {
    const StreamPtr stream = streamOver("abc");
    seek(*stream, 1, STREAM_SEEK_SET);
    EXPECT_EQ(stream->Seek({-1}, STREAM_SEEK_SET, nullptr), STG_E_INVALIDFUNCTION);
    EXPECT_EQ(stream->Seek({-2}, STREAM_SEEK_CUR, nullptr), STG_E_INVALIDFUNCTION);
    EXPECT_EQ(stream->Seek({-4}, STREAM_SEEK_END, nullptr), STG_E_INVALIDFUNCTION);
    EXPECT_EQ(stream->Seek({std::numeric_limits<__int64>::max()}, STREAM_SEEK_CUR, nullptr),
              STG_E_INVALIDFUNCTION);
    EXPECT_EQ(stream->Seek({0}, 3, nullptr), STG_E_INVALIDFUNCTION);
    EXPECT_EQ(readOn(*stream, 1), "b");
}

TEST(MemoryStream, GrowsByWritingBehindItsEndWithZerosBetween) {
    const StreamPtr stream = streamOver("ab");
    EXPECT_EQ(seek(*stream, 4, STREAM_SEEK_SET), 4U);
    EXPECT_EQ(readOn(*stream, 1), "");
    write(*stream, "ef");
    seek(*stream, 0, STREAM_SEEK_SET);
    EXPECT_EQ(readOn(*stream, 9), std::string("ab\0\0ef", 6));
}

TEST(MemoryStream, WritesOverWhatIsThere) {
    const StreamPtr stream = streamOver("abcd");
    write(*stream, "xy");
    EXPECT_EQ(readOn(*stream, 9), "cd");
    EXPECT_EQ(sizeOf(*stream), 4U);
}

TEST(MemoryStream, TakesASizeAndRefusesOneThatNoMemoryHolds) {
    const StreamPtr stream = streamOver("abcd");
    EXPECT_EQ(stream->SetSize({2}), S_OK);
    EXPECT_EQ(readOn(*stream, 9), "ab");
    EXPECT_EQ(stream->SetSize({std::numeric_limits<UINT64>::max()}), E_OUTOFMEMORY);
    EXPECT_EQ(sizeOf(*stream), 2U);
    seek(*stream, std::numeric_limits<__int64>::max(), STREAM_SEEK_SET);
    EXPECT_EQ(stream->Write("x", 1, nullptr), E_OUTOFMEMORY);
}

TEST(MemoryStream, SharesItsBytesWithClonesThatHaveAPlaceOfTheirOwn) {
    const StreamPtr stream = streamOver("abcdefg");
    seek(*stream, 2, STREAM_SEEK_SET);
    IStream* raw = nullptr;
    ASSERT_EQ(stream->Clone(&raw), S_OK);
    const StreamPtr clone(raw);
    EXPECT_EQ(readOn(*stream, 2), "cd");
    write(*clone, "CD");
    EXPECT_EQ(readOn(*clone, 1), "e");
    seek(*stream, 0, STREAM_SEEK_SET);
    EXPECT_EQ(readOn(*stream, 4), "abCD");
}

TEST(MemoryStream, CopiesFromItsPlaceAsFarAsThereAreBytes) {
    std::string text(100'000, 'x');
    text.front() = 'a';
    text.back() = 'z';
    const StreamPtr source = streamOver(text);
    const StreamPtr target = streamOver("");
    seek(*source, 1, STREAM_SEEK_SET);
    ULARGE_INTEGER read = {};
    ULARGE_INTEGER written = {};
    ASSERT_EQ(source->CopyTo(target.get(), {std::numeric_limits<UINT64>::max()}, &read, &written), S_OK);
    EXPECT_EQ(read.QuadPart, 99'999U);
    EXPECT_EQ(written.QuadPart, 99'999U);
    seek(*target, 0, STREAM_SEEK_SET);
    EXPECT_EQ(readOn(*target, 100'000), text.substr(1));
}

TEST(MemoryStream, CopiesNoMoreThanItIsAsked) {
    const StreamPtr source = streamOver("abcdef");
    const StreamPtr target = streamOver("");
    ASSERT_EQ(source->CopyTo(target.get(), {2}, nullptr, nullptr), S_OK);
    EXPECT_EQ(sizeOf(*target), 2U);
    EXPECT_EQ(readOn(*source, 9), "cdef");
}

TEST(MemoryStream, TellsWhatItIsAndCountsItsUsers) {
    const StreamPtr stream = streamOver("abc");
    for (const IID& known : {IID_IUnknown, IID_ISequentialStream, IID_IStream}) {
        void* object = nullptr;
        ASSERT_EQ(stream->QueryInterface(known, &object), S_OK);
        EXPECT_EQ(static_cast<IUnknown*>(object)->Release(), 1U);
    }
    void* object = stream.get();
    EXPECT_EQ(stream->QueryInterface(IID{}, &object), E_NOINTERFACE);
    EXPECT_EQ(object, nullptr);
    EXPECT_EQ(stream->QueryInterface(IID_IStream, nullptr), E_POINTER);
}

TEST(MemoryStream, RefusesNullPointersAndLocks) {
    const StreamPtr stream = streamOver("abc");
    EXPECT_EQ(stream->Read(nullptr, 1, nullptr), STG_E_INVALIDPOINTER);
    EXPECT_EQ(stream->Write(nullptr, 1, nullptr), STG_E_INVALIDPOINTER);
    EXPECT_EQ(stream->Stat(nullptr, STATFLAG_NONAME), STG_E_INVALIDPOINTER);
    EXPECT_EQ(stream->Clone(nullptr), STG_E_INVALIDPOINTER);
    EXPECT_EQ(stream->CopyTo(nullptr, {1}, nullptr, nullptr), STG_E_INVALIDPOINTER);
    EXPECT_EQ(stream->LockRegion({0}, {1}, 1), STG_E_INVALIDFUNCTION);
}

TEST(TaskMemory, IsGivenBackByItsOwnFunctionAlsoWhenItIsOfNoBytes) {
    void* nothing = CoTaskMemAlloc(0);
    EXPECT_NE(nothing, nullptr);
    CoTaskMemFree(nothing);
    CoTaskMemFree(CoTaskMemAlloc(100));
    CoTaskMemFree(nullptr);
}
