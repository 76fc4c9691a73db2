#include "inspection/source/ContainerPath.h"

#include "inspection/source/StructuredStorage.h"

#include "support/TempFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr DWORD forWriting = STGM_WRITE | STGM_CREATE | STGM_SHARE_EXCLUSIVE;

struct Releaser {
    void operator()(IUnknown* object) const { object->Release(); }
};

void addStream(IStorage& storage, const wchar_t* name, const std::string& content) {
    IStream* stream = nullptr;
    ASSERT_EQ(storage.CreateStream(name, forWriting, 0, 0, &stream), S_OK);
    const std::unique_ptr<IStream, Releaser> owner(stream);
    EXPECT_EQ(stream->Write(content.data(), static_cast<ULONG>(content.size()), nullptr), S_OK);
}

/// A folder with a recording in it.
class Containers : public testing::Test {
protected:
    Containers() {
        void* object = nullptr;
        EXPECT_EQ(StgCreateStorageEx(container.c_str(), forWriting, STGFMT_DOCFILE, 0, nullptr, nullptr,
                                     IID_IStorage, &object),
                  S_OK);
        const std::unique_ptr<IStorage, Releaser> storage(static_cast<IStorage*>(object));
        addStream(*storage, L"Screen_Stream.avi", "screen");
        addStream(*storage, L"Audio.wav", "sound");
        EXPECT_EQ(storage->Commit(STGC_DEFAULT), S_OK);
    }

    /// With backslashes, as the paths that members are looked up by have them.
    std::wstring path(const std::string& name) const {
        std::wstring whole = TestSupport::wideOf(folder / name);
        std::replace(whole.begin(), whole.end(), L'/', L'\\');
        return whole;
    }

    TestSupport::TempFolder folder;
    std::wstring container = TestSupport::wideOf(folder / "Talk.plumex");
};

} // namespace

TEST(SplitContainerPath, TakesTheMemberOffInLowerCase) {
    std::wstring disk;
    std::wstring member;
    EXPECT_EQ(SplitContainerPath(L"A.PLUMEX!Audio.wav", disk, member), 0);
    EXPECT_EQ(disk, L"a.plumex");
    EXPECT_EQ(member, L"audio.wav");
}

TEST(SplitContainerPath, GivesAnyOtherPathInLowerCaseAndLeavesTheMemberAsItWas) {
    for (const wchar_t* path :
         {L"C:\\Dir\\Clip.AVI", L"Talk.Plumex", L"Talk.plumex.bak!x", L"Audio!x.plumex"}) {
        std::wstring disk = L"before";
        std::wstring member = L"Before";
        EXPECT_EQ(SplitContainerPath(path, disk, member), 1) << path;
        std::wstring lower = path;
        std::transform(lower.begin(), lower.end(), lower.begin(), ::towlower);
        EXPECT_EQ(disk, lower);
        EXPECT_EQ(member, L"Before");
    }
}

TEST(SplitContainerPath, SplitsAtTheFirstMarker) {
    std::wstring disk;
    std::wstring member;
    EXPECT_EQ(SplitContainerPath(L"a.plumex!b.plumex!c", disk, member), 0);
    EXPECT_EQ(disk, L"a.plumex");
    EXPECT_EQ(member, L"b.plumex!c");
}

TEST(SplitContainerPath, GivesAnEmptyMemberBehindAMarkerAtTheEnd) {
    std::wstring disk;
    std::wstring member = L"before";
    EXPECT_EQ(SplitContainerPath(L"a.plumex!", disk, member), 0);
    EXPECT_EQ(member, L"");
}

TEST(SplitContainerPath, MayWriteOverThePathItReads) {
    std::wstring path = L"A.plumex!B";
    std::wstring member;
    EXPECT_EQ(SplitContainerPath(path, path, member), 0);
    EXPECT_EQ(path, L"a.plumex");
    EXPECT_EQ(member, L"b");
}

TEST_F(Containers, HaveMembersInAnyLetterCase) {
    EXPECT_EQ(MemberExists(path("Talk.plumex") + L"!AUDIO.Wav"), 1);
    EXPECT_EQ(MemberExists(path("TALK.PLUMEX") + L"!screen_stream.avi"), 1);
}

TEST_F(Containers, HaveNoMembersButTheirOwn) {
    EXPECT_EQ(MemberExists(path("Talk.plumex") + L"!SysAudio.wav"), 0);
    EXPECT_EQ(MemberExists(path("Talk.plumex") + L"!Audio"), 0);
}

TEST_F(Containers, AreTestedAsPlainFilesWithoutAMarker) {
    EXPECT_EQ(MemberExists(path("Talk.plumex")), 1);
    EXPECT_EQ(MemberExists(container), 1);
    EXPECT_EQ(MemberExists(path("Missing.plumex")), 0);
    folder.write("clip.avi", "clip");
    EXPECT_EQ(MemberExists(path("clip.avi")), 1);
    EXPECT_EQ(MemberExists(path("missing.avi")), 0);
}

TEST_F(Containers, HaveNoMembersOnARelativePathWithoutFolder) {
    EXPECT_EQ(MemberExists(L"x.plumex!Audio.wav"), 0);
    EXPECT_EQ(MemberExists(L"x.plumex!"), 0);
}

TEST_F(Containers, HaveNoMembersWhereSlashesAloneMakeTheFolder) {
    EXPECT_EQ(MemberExists(container + L"!Audio.wav"), 0);
}

TEST_F(Containers, WithAnEmptyMemberAreTestedAsTheWholeText) {
    EXPECT_EQ(MemberExists(path("Talk.plumex") + L"!"), 0);
    folder.write("Talk.plumex!", "a file of that very name");
    EXPECT_EQ(MemberExists(path("Talk.plumex") + L"!"), 1);
}

TEST_F(Containers, ThatAreNoCompoundFilesAreTestedAsTheWholeText) {
    folder.write("Text.plumex", "no compound file");
    EXPECT_EQ(MemberExists(path("Text.plumex") + L"!Audio.wav"), 0);
    EXPECT_EQ(MemberExists(path("Missing.plumex") + L"!Audio.wav"), 0);
    folder.write("Text.plumex!Audio.wav", "a file of that very name");
    EXPECT_EQ(MemberExists(path("Text.plumex") + L"!Audio.wav"), 1);
}

TEST_F(Containers, OpenListAndReadTheirMembers) {
    NuvraUtl::StructuredStorage storage;
    ASSERT_EQ(storage.Open(container), 1);
    EXPECT_EQ(storage.LastResult(), S_OK);
    std::vector<std::wstring> names = {L"before"};
    storage.ListElements(names);
    EXPECT_THAT(names, ElementsAre(L"before", L"Audio.wav", L"Screen_Stream.avi"));
    IStream* stream = nullptr;
    ASSERT_EQ(storage.OpenStream(&stream, L"Audio.wav"), 1);
    const std::unique_ptr<IStream, Releaser> owner(stream);
    std::string content(5, '\0');
    EXPECT_EQ(stream->Read(content.data(), 5, nullptr), S_OK);
    EXPECT_EQ(content, "sound");
}

TEST_F(Containers, TellWhyTheyDoNotOpen) {
    NuvraUtl::StructuredStorage storage;
    EXPECT_EQ(storage.Open(path("Missing.plumex")), 0);
    EXPECT_EQ(storage.LastResult(), STG_E_FILENOTFOUND);
    folder.write("Text.plumex", "no compound file");
    EXPECT_EQ(storage.Open(path("Text.plumex")), 0);
    EXPECT_EQ(storage.LastResult(), STG_E_FILEALREADYEXISTS);
    ASSERT_EQ(storage.Open(container), 1);
    IStream* stream = nullptr;
    EXPECT_EQ(storage.OpenStream(&stream, L"Camera_Stream.wmv"), 0);
    EXPECT_EQ(storage.LastResult(), STG_E_FILENOTFOUND);
}

TEST_F(Containers, GiveNothingWhileTheyAreClosed) {
    NuvraUtl::StructuredStorage storage;
    ASSERT_EQ(storage.Open(container), 1);
    storage.Close();
    EXPECT_EQ(storage.LastResult(), S_OK);
    IStream* stream = reinterpret_cast<IStream*>(this);
    EXPECT_EQ(storage.OpenStream(&stream, L"Audio.wav"), 0);
    EXPECT_EQ(stream, nullptr);
    EXPECT_EQ(storage.LastResult(), E_POINTER);
    std::vector<std::wstring> names;
    storage.ListElements(names);
    EXPECT_THAT(names, IsEmpty());
}

TEST_F(Containers, CloseWhatWasOpenWhenTheyOpenAnother) {
    NuvraUtl::StructuredStorage storage;
    ASSERT_EQ(storage.Open(container), 1);
    EXPECT_EQ(storage.Open(path("Missing.plumex")), 0);
    std::vector<std::wstring> names;
    storage.ListElements(names);
    EXPECT_THAT(names, IsEmpty());
}
