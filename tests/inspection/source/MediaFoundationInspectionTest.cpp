#include "inspection/source/MediaFoundationInspection.h"
#include "inspection/source/WindowsVersionProvider.h"

#include "backends/system/RegistryUser.h"
#include "inspection/source/Mp4Bytes.h"

#include <boost/make_shared.hpp>

#include <gtest/gtest.h>

namespace {

class Version : public WindowsVersionProvider {
public:
    explicit Version(bool windows8OrLater)
        : isLate(windows8OrLater) {}

    bool IsWindows8OrLater() const override { return isLate; }

private:
    bool isLate;
};

bool onWindows8(const std::wstring& path) {
    return UseMediaFoundationInspection(path, 0, boost::make_shared<Version>(true));
}

bool onWindows7(const std::wstring& path) {
    return UseMediaFoundationInspection(path, 0, boost::make_shared<Version>(false));
}

TEST(UseMediaFoundationInspection, TakesNineKindsOfFilesSinceWindows8) {
    for (const wchar_t* name : {L"a.wmv", L"a.wma", L"a.mp3", L"a.mp4", L"a.mov", L"a.wav", L"a.m4a",
                                L"a.mts", L"a.m2ts", L"a.MP4", L"C:\\x.y\\a.M2ts"})
        EXPECT_TRUE(onWindows8(name));
}

TEST(UseMediaFoundationInspection, TakesFiveKindsOfFilesBefore) {
    for (const wchar_t* name : {L"a.wmv", L"a.wma", L"a.mp3", L"a.wav", L"a.m4a", L"a.M4A"})
        EXPECT_TRUE(onWindows7(name));
    for (const wchar_t* name : {L"a.mov", L"a.mp4", L"a.mts", L"a.m2ts", L"a.MP4"})
        EXPECT_FALSE(onWindows7(name));
}

TEST(UseMediaFoundationInspection, TakesNothingElse) {
    for (const wchar_t* name : {L"a.avi", L"a.mpg", L"a.mpeg", L"a.png", L"a", L"mp4", L"a.", L""}) {
        EXPECT_FALSE(onWindows8(name));
        EXPECT_FALSE(onWindows7(name));
    }
}

TEST(UseMediaFoundationInspection, LeavesRecordingsToGraphs) {
    for (const wchar_t* name :
         {L"a.mosk", L"a.MOSK", L"a.plumex", L"a.Plumex", L"a.plumex!Audio.wav", L"a.mosk!Svideo0.mp4"})
        EXPECT_FALSE(onWindows8(name));
}

TEST(UseMediaFoundationInspection, GoesByTheWholeNameOfAMemberThatIsNotKnown) {
    EXPECT_TRUE(onWindows8(L"a.plumex!audio.wav"));
}

TEST(UseMediaFoundationInspection, TakesNothingWithoutAVersion) {
    EXPECT_FALSE(UseMediaFoundationInspection(L"a.wmv", 0, {}));
    EXPECT_FALSE(UseMediaFoundationInspection(L"a.mov", 0, {}));
}

TEST(UseMediaFoundationInspection, TakesMoviesOfPngPicturesEverywhere) {
    using namespace Mp4Bytes; // NOLINT(google-build-using-namespace): its vocabulary
    const TempFolder temp;
    const std::string pictures = videoTrak({}, stsd(1, videoEntry("png ", 9, 9)));
    const std::string path = temp.file("a.MOV", ftyp() + atom("moov", pictures) + atom("free"));
    const std::wstring wide(path.begin(), path.end());
    EXPECT_TRUE(onWindows7(wide));
    EXPECT_TRUE(UseMediaFoundationInspection(wide, 0, {}));
    temp.file("a.MOV", ftyp() + atom("moov", videoTrak()));
    EXPECT_FALSE(onWindows7(wide)) << "the answer is not kept";
}

TEST(WindowsVersionProvider, KnowsWindows8ByTheVersionOfThePlatform) {
    const RegistryUser user("");
    const WindowsVersionProvider provider;
    EXPECT_TRUE(provider.IsWindows8OrLater());
    user.write(versionText("00000006", "00000002"));
    EXPECT_TRUE(provider.IsWindows8OrLater());
    user.write(versionText("00000006", "00000001"));
    EXPECT_FALSE(provider.IsWindows8OrLater());
    user.write(versionText("00000005", "00000009"));
    EXPECT_FALSE(provider.IsWindows8OrLater());
}

} // namespace
