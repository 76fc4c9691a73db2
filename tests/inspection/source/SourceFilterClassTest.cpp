#include "inspection/source/SourceFilterClass.h"
#include "inspection/source/FilterCacheSeeds.h"
#include "inspection/source/GraphKey.h"
#include "inspection/source/InstallMode.h"
#include "platform/DirectShowGuids.h"

#include "backends/system/RegistryUser.h"
#include "inspection/source/GuidText.h"

#include <gtest/gtest.h>

namespace {

std::string installMode(const std::string& value) {
    return "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Harrowend\\Lorvanta Studio\\tp]\nInstallMode=" + value + "\n";
}

TEST(IsInstallModeOne, HoldsForTheNumber1) {
    const RegistryUser user(installMode("dword:00000001"));
    EXPECT_EQ(IsInstallModeOne(), 1);
}

TEST(IsInstallModeOne, DoesNotHoldForAnythingElse) {
    const RegistryUser user("");
    EXPECT_EQ(IsInstallModeOne(), 0);
    for (const char* value : {"dword:00000000", "dword:00000002", "\"1\"", "\"\"", "\"a long text\"", "1"}) {
        user.write(installMode(value));
        EXPECT_EQ(IsInstallModeOne(), 0) << value;
    }
    user.write("[HKEY_LOCAL_MACHINE\\SOFTWARE\\Harrowend\\Lorvanta Studio\\tp]\nOther=dword:00000001\n");
    EXPECT_EQ(IsInstallModeOne(), 0);
    user.remove();
    EXPECT_EQ(IsInstallModeOne(), 0);
}

TEST(IsInstallModeOne, IsReadAnewWithEachCall) {
    const RegistryUser user(installMode("dword:00000001"));
    EXPECT_EQ(IsInstallModeOne(), 1);
    user.write(installMode("dword:00000000"));
    EXPECT_EQ(IsInstallModeOne(), 0);
}

std::string classFor(const std::wstring& path) {
    return guidText(SourceFilterClassForPath(path));
}

TEST(SourceFilterClassForPath, GivesTheClassesOfMode0) {
    const RegistryUser user("");
    EXPECT_EQ(classFor(L"a.plumex!Audio.wav"), "{D59FB900-ED16-41EB-A39C-A2AF9798A7AC}");
    for (const wchar_t* name : {L"a.png", L"a.bmp", L"a.jpg", L"a.jpeg", L"a.gif", L"A.PNG"})
        EXPECT_EQ(classFor(name), "{D59FB903-ED16-41EB-A39C-A2AF9798A7AC}");
}

TEST(SourceFilterClassForPath, GivesTheClassesOfMode1) {
    const RegistryUser user(installMode("dword:00000001"));
    EXPECT_EQ(classFor(L"a.plumex!Audio.wav"), "{8CF33D00-58CA-4D63-98FB-372129DEAC90}");
    for (const wchar_t* name : {L"a.png", L"a.bmp", L"a.jpg", L"a.jpeg", L"a.gif", L"A.PNG"})
        EXPECT_EQ(classFor(name), "{8CF33D04-58CA-4D63-98FB-372129DEAC90}");
}

TEST(SourceFilterClassForPath, GivesThePlatformsClassesInEitherMode) {
    const RegistryUser user("");
    for (const char* mode : {"dword:00000000", "dword:00000001"}) {
        user.write(installMode(mode));
        for (const wchar_t* name : {L"a.mp4", L"a.mov", L"a.mp3", L"a.wav", L"a.avi", L"a.mpg", L"a.mpeg",
                                    L"a.mts", L"a.m2ts", L"a.mosk", L"C:\\x.y\\A.MP4"})
            EXPECT_EQ(SourceFilterClassForPath(name), CLSID_AsyncReader);
        for (const wchar_t* name : {L"a.wmv", L"a.wma", L"a.WMV"})
            EXPECT_EQ(SourceFilterClassForPath(name), CLSID_WMAsfReader);
        for (const wchar_t* name : {L"a.plumex", L"a.mkv", L"a", L"mp4", L"a.mp4.", L""})
            EXPECT_EQ(SourceFilterClassForPath(name), GUID_NULL);
    }
}

TEST(SourceFilterClassForPath, TakesAnyMemberOfAContainerInAnyCase) {
    const RegistryUser user("");
    EXPECT_EQ(classFor(L"name.plumex!screen_stream.avi"), "{D59FB900-ED16-41EB-A39C-A2AF9798A7AC}");
    EXPECT_EQ(classFor(L"NAME.PLUMEX!other"), "{D59FB900-ED16-41EB-A39C-A2AF9798A7AC}");
}

TEST(SourceFilterClassForPath, GoesByTheLastDotOfTheWholePath) {
    EXPECT_EQ(SourceFilterClassForPath(L"C:\\a.mp4\\name"), GUID_NULL);
    EXPECT_EQ(SourceFilterClassForPath(L"a.mosk!Svideo0.mp4"), CLSID_AsyncReader);
}

TEST(GraphKeyForPath, IsTheExtensionInLowerCase) {
    EXPECT_EQ(GraphKeyForPath(L"C:\\dir\\name.x.MP4"), L"mp4");
    EXPECT_EQ(GraphKeyForPath(L"name.mosk!Svideo0.mp4"), L"mp4");
}

TEST(GraphKeyForPath, IsEmptyWithoutAnExtension) {
    EXPECT_EQ(GraphKeyForPath(L"C:\\a.b\\name"), L"");
    EXPECT_EQ(GraphKeyForPath(L"name."), L"");
    EXPECT_EQ(GraphKeyForPath(L""), L"");
}

TEST(GraphKeyForPath, DoesNotSeparateAtSlashes) {
    EXPECT_EQ(GraphKeyForPath(L"/a.b/name"), L"b/name");
}

TEST(GraphKeyForPath, HoldsTheMemberOfAContainer) {
    EXPECT_EQ(GraphKeyForPath(L"C:\\dir\\Name.PLUMEX!Screen_Stream.avi"), L"plumex!screen_stream.avi");
    EXPECT_EQ(GraphKeyForPath(L".plumex!"), L"plumex!");
}

TEST(GraphKeyForPath, BeginsSixCharactersBeforeTheLastMark) {
    EXPECT_EQ(GraphKeyForPath(L"name.plumex!some!other"), L"x!some!other");
}

TEST(GraphKeyForPath, IsTheExtensionOfAWholeContainer) {
    EXPECT_EQ(GraphKeyForPath(L"name.plumex"), L"plumex");
}

std::vector<std::string> seedsFor(const std::wstring& path) {
    std::vector<std::string> seeds;
    for (const CLSID& filter : FilterCacheSeedsForPath(path))
        seeds.push_back(guidText(filter));
    return seeds;
}

TEST(FilterCacheSeedsForPath, AreDemultiplexerAndDecodersOfMp4) {
    const std::vector<std::string> expected = {"{2A55FF12-1657-41D7-9D2D-A2CDC6978FF2}",
                                               "{19987CEE-DEE8-49DC-98EC-F21380AA9E68}",
                                               "{96B9D0ED-8D13-4171-A983-B84D88D627BE}"};
    for (const wchar_t* name : {L"a.mp4", L"a.MP4", L"a.mosk", L"a.mosk!Svideo0.mp4"})
        EXPECT_EQ(seedsFor(name), expected);
}

TEST(FilterCacheSeedsForPath, AreDemultiplexerAndDecoderOfTransportStreams) {
    const std::vector<std::string> expected = {"{136DCBF5-3874-4B70-AE3E-15997D6334F7}",
                                               "{96B9D0ED-8D13-4171-A983-B84D88D627BE}"};
    for (const wchar_t* name : {L"a.mts", L"a.m2ts", L"a.M2TS"})
        EXPECT_EQ(seedsFor(name), expected);
}

TEST(FilterCacheSeedsForPath, AreNoneForAnythingElse) {
    for (const wchar_t* name : {L"a.mov", L"a.avi", L"a.ts", L"a.plumex!Audio.wav", L"mp4", L""})
        EXPECT_TRUE(seedsFor(name).empty());
}

} // namespace
