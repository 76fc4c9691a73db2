#include "inspection/source/MediaPath.h"

#include "support/TempFolder.h"
#include "support/video/Videos.h"

#include <gtest/gtest.h>

namespace {

using TestSupport::TempFolder;
using TestSupport::wideOf;

SourceRecord parsed(const std::wstring& path) {
    return ParseMediaPath(path, anyTrack);
}

void expectParts(const std::wstring& path, const std::wstring& folder, const std::wstring& filePart) {
    const SourceRecord record = parsed(path);
    EXPECT_EQ(record.folder, folder);
    EXPECT_EQ(record.memberName, filePart);
    EXPECT_EQ(record.containerName, filePart);
    EXPECT_EQ(record.kind, 0);
    EXPECT_EQ(record.index, 0U);
    EXPECT_EQ(record.sourceCode, 0);
}

void expectMember(const std::wstring& path, std::int32_t kind, std::uint32_t index, std::int32_t sourceCode) {
    const SourceRecord record = parsed(path);
    EXPECT_EQ(record.memberName, path);
    EXPECT_EQ(record.containerName, L"name.plumex");
    EXPECT_EQ(record.kind, kind);
    EXPECT_EQ(record.index, index);
    EXPECT_EQ(record.sourceCode, sourceCode);
}

TEST(ParseMediaPath, SplitsAtTheLastBackslash) {
    expectParts(L"C:\\dir\\name.ext", L"C:\\dir\\", L"name.ext");
    expectParts(L"C:\\dir\\", L"C:\\dir\\", L"");
}

TEST(ParseMediaPath, SplitsAtTheLastOfBothSeparators) {
    expectParts(L"C:\\dir/name.ext", L"C:\\dir/", L"name.ext");
    expectParts(L"C:/dir\\name.ext", L"C:/dir\\", L"name.ext");
}

TEST(ParseMediaPath, DoesNotSplitAtSlashesAlone) {
    expectParts(L"/home/name.ext", L"", L"/home/name.ext");
}

TEST(ParseMediaPath, TakesAPathWithoutSeparatorsWhole) {
    expectParts(L"name.ext", L"", L"name.ext");
    expectParts(L"", L"", L"");
}

TEST(ParseMediaPath, SplitsAMemberOff) {
    const SourceRecord record = parsed(L"C:\\dir\\name.plumex!Events.dat");
    EXPECT_EQ(record.folder, L"C:\\dir\\");
    EXPECT_EQ(record.memberName, L"name.plumex!Events.dat");
    EXPECT_EQ(record.containerName, L"name.plumex");
    EXPECT_EQ(record.kind, 8);
    EXPECT_EQ(record.sourceCode, 0);
}

TEST(ParseMediaPath, KnowsSixMembersByTheirNames) {
    expectMember(L"name.plumex!Screen_Stream.avi", 4, 0, 100);
    expectMember(L"name.plumex!Camera_Stream.wmv", 5, 0, 101);
    expectMember(L"name.plumex!Audio.wav", 6, 0, 105);
    expectMember(L"name.plumex!SysAudio.wav", 7, 0, 100);
    expectMember(L"name.plumex!Events.dat", 8, 0, 0);
    expectMember(L"name.plumex!manifest.plumxml", 9, 0, 0);
}

TEST(ParseMediaPath, KnowsNumberedMembers) {
    expectMember(L"name.plumex!Svideo3.mp4", 1, 3, 100);
    expectMember(L"name.plumex!_audio0.mp4", 2, 0, 0);
    expectMember(L"name.plumex!Mtrack9.qrl2", 3, 9, 103);
}

TEST(ParseMediaPath, ReadsOneDigitOfTheNumber) {
    expectMember(L"name.plumex!Svideo12.mp4", 1, 1, 100);
    expectMember(L"name.plumex!Svideo1 of two.mp4", 1, 1, 100);
}

TEST(ParseMediaPath, TellsTheSourceByTheFirstCharacter) {
    expectMember(L"name.plumex!Svideo1.mp4", 1, 1, 100);
    expectMember(L"name.plumex!Cvideo1.mp4", 1, 1, 101);
    expectMember(L"name.plumex!$video1.mp4", 1, 1, 102);
    expectMember(L"name.plumex!Mvideo1.mp4", 1, 1, 103);
    expectMember(L"name.plumex!Vvideo1.mp4", 1, 1, 104);
    expectMember(L"name.plumex!Avideo1.mp4", 1, 1, 105);
    expectMember(L"name.plumex!_video1.mp4", 1, 1, 0);
    expectMember(L"name.plumex!svideo1.mp4", 1, 1, 0);
    expectMember(L"name.plumex!Xvideo1.mp4", 1, 1, 0);
}

TEST(ParseMediaPath, LeavesANameWholeWhoseMemberIsNotKnown) {
    for (const wchar_t* member :
         {L"screen_stream.avi", L"AUDIO.WAV", L"video3.mp4", L"SVideo3.mp4", L"Svideo3.MP4", L"Svideo.mp4",
          L"Svideox.mp4", L"Svideo3.qrl2", L"Strack3.mp4", L"Svideo3", L"S", L"", L"S.mp4", L"Events.dat "}) {
        const std::wstring path = std::wstring(L"name.plumex!") + member;
        expectParts(path, L"", path);
    }
}

TEST(ParseMediaPath, DoesNotSplitAtAMarkInFront) {
    expectParts(L"!Audio.wav", L"", L"!Audio.wav");
    expectParts(L"C:\\dir\\!Audio.wav", L"C:\\dir\\", L"!Audio.wav");
}

TEST(ParseMediaPath, SplitsAtTheLastMark) {
    const SourceRecord record = parsed(L"a!b.plumex!Audio.wav");
    EXPECT_EQ(record.containerName, L"a!b.plumex");
    expectParts(L"a.plumex!Audio.wav!b", L"", L"a.plumex!Audio.wav!b");
}

TEST(ParseMediaPath, SplitsMembersOffAnyContainer) {
    EXPECT_EQ(parsed(L"name.zip!Audio.wav").containerName, L"name.zip");
}

TEST(ParseMediaPath, FindsAMemberBehindSlashesAlone) {
    const SourceRecord record = parsed(L"/home/name.plumex!Audio.wav");
    EXPECT_EQ(record.folder, L"");
    EXPECT_EQ(record.containerName, L"/home/name.plumex");
    EXPECT_EQ(record.kind, 6);
}

TEST(ParseMediaPath, LooksATrackUpInItsRecording) {
    const std::wstring path = wideOf(videoPath("recording.mosk"));
    const std::vector<std::pair<std::int32_t, std::int32_t>> expected = {
        {3, 100}, {1, 101}, {2, 102}, {2, 103}};
    for (std::uint32_t index = 0; index < expected.size(); ++index) {
        const SourceRecord record = ParseMediaPath(path, index);
        EXPECT_EQ(record.kind, expected[index].first) << index;
        EXPECT_EQ(record.sourceCode, expected[index].second) << index;
        EXPECT_EQ(record.index, index);
        EXPECT_EQ(record.containerName, path);
        EXPECT_EQ(record.memberName, path);
    }
}

TEST(ParseMediaPath, SplitsThePathOfATrackToo) {
    const TempFolder temp;
    temp.write("Talk.MOSK", TestSupport::readFile(videoPath("recording.mosk")));
    const std::wstring folder = wideOf(temp / "") + L'\\';
    const SourceRecord record = ParseMediaPath(folder + L"Talk.MOSK", 1);
    EXPECT_EQ(record.folder, folder);
    EXPECT_EQ(record.memberName, L"Talk.MOSK");
    EXPECT_EQ(record.containerName, L"Talk.MOSK");
    EXPECT_EQ(record.kind, 1);
}

TEST(ParseMediaPath, KeepsTheNumberOfATrackThatTheRecordingDoesNotHave) {
    const SourceRecord record = ParseMediaPath(wideOf(videoPath("recording.mosk")), 4);
    EXPECT_EQ(record.kind, 0);
    EXPECT_EQ(record.sourceCode, 0);
    EXPECT_EQ(record.index, 4U);
    EXPECT_FALSE(record.containerName.empty());
}

TEST(ParseMediaPath, IsEmptyForATrackOfARecordingThatIsNotThere) {
    const SourceRecord record = ParseMediaPath(L"C:\\nowhere\\name.mosk", 1);
    EXPECT_EQ(record.folder, L"");
    EXPECT_EQ(record.memberName, L"");
    EXPECT_EQ(record.containerName, L"");
    EXPECT_EQ(record.kind, 0);
    EXPECT_EQ(record.index, 0U);
}

TEST(ParseMediaPath, TakesARecordingWithoutATrackForAFile) {
    expectParts(L"C:\\nowhere\\name.mosk", L"C:\\nowhere\\", L"name.mosk");
}

TEST(ParseMediaPath, DoesNotLookForTracksInOtherFiles) {
    const SourceRecord record = ParseMediaPath(L"name.mp4", 1);
    EXPECT_EQ(record.containerName, L"name.mp4");
    EXPECT_EQ(record.index, 0U);
}

std::wstring extensionOf(const std::wstring& path) {
    return ExtensionOfMediaPath(parsed(path));
}

TEST(ExtensionOfMediaPath, StandsBehindTheLastDotOfTheContainer) {
    EXPECT_EQ(extensionOf(L"C:\\a.b\\name.x.MP4"), L"MP4");
    EXPECT_EQ(extensionOf(L"name.plumex!Audio.wav"), L"plumex");
    EXPECT_EQ(extensionOf(L"name.plumex!other.wav"), L"wav");
}

TEST(ExtensionOfMediaPath, IsEmptyWithoutADot) {
    EXPECT_EQ(extensionOf(L"C:\\a.b\\name"), L"");
    EXPECT_EQ(extensionOf(L"name."), L"");
    EXPECT_EQ(extensionOf(L""), L"");
}

TEST(IsMoskMemberPath, HoldsForNumberedMembers) {
    EXPECT_TRUE(IsMoskMemberPath(L"name.mosk!Svideo0.mp4"));
    EXPECT_TRUE(IsMoskMemberPath(L"name.mosk!Aaudio1.mp4"));
    EXPECT_TRUE(IsMoskMemberPath(L"name.mosk!Strack2.qrl2"));
}

TEST(IsMoskMemberPath, DoesNotHoldForAnythingElse) {
    EXPECT_FALSE(IsMoskMemberPath(L"name.mosk"));
    EXPECT_FALSE(IsMoskMemberPath(L"name.plumex!Screen_Stream.avi"));
    EXPECT_FALSE(IsMoskMemberPath(L"name.plumex!manifest.plumxml"));
    EXPECT_FALSE(IsMoskMemberPath(L"name.mosk!other.mp4"));
}

} // namespace
