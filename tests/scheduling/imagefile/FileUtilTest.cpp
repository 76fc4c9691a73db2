#include "scheduling/imagefile/FileUtil.h"

#include "scheduling/imagefile/TextConversion.h"
#include "support/TempFolder.h"

#include <gtest/gtest.h>

namespace KestoThumbnailer {

TEST(FileUtil, AFileAndAFolderExist) {
    const TestSupport::TempFolder folder;
    EXPECT_TRUE(FileUtil::fileExists(folder.write("tile.png", "x").string()));
    EXPECT_TRUE(FileUtil::fileExists((folder / "").string()));
}

TEST(FileUtil, AMissingFileAndAnEmptyPathDoNotExist) {
    const TestSupport::TempFolder folder;
    EXPECT_FALSE(FileUtil::fileExists((folder / "tile.png").string()));
    EXPECT_FALSE(FileUtil::fileExists(""));
}

TEST(FileUtil, ToLowerChangesAsciiLettersAndKeepsOtherBytes) {
    EXPECT_EQ(FileUtil::toLower("Clip-7.MP4 \xC3\x89"), "clip-7.mp4 \xC3\x89");
}

TEST(FileUtil, TheExtensionIsWhatFollowsTheLastDotInLowerCase) {
    EXPECT_EQ(FileUtil::extension("holiday.tar.GZ"), "gz");
    EXPECT_EQ(FileUtil::extension("PICTURE.PNG"), "png");
}

TEST(FileUtil, WithoutADotTheExtensionIsEmpty) {
    EXPECT_EQ(FileUtil::extension("C:\\Folder\\File"), "");
    EXPECT_EQ(FileUtil::extension("name."), "");
    EXPECT_EQ(FileUtil::extension(""), "");
}

TEST(FileUtil, ADotInAFolderNameSplitsThere) {
    EXPECT_EQ(FileUtil::extension("C:\\a.b\\file"), "b\\file");
    EXPECT_EQ(FileUtil::fullPathWithoutExtension("C:\\a.b\\file"), "c:\\a");
}

TEST(FileUtil, ThePathWithoutExtensionIsLowerCased) {
    EXPECT_EQ(FileUtil::fullPathWithoutExtension("C:\\Folder\\Tile.One.PNG"), "c:\\folder\\tile.one");
}

TEST(FileUtil, APathWithoutDotKeepsItsCase) {
    EXPECT_EQ(FileUtil::fullPathWithoutExtension("C:\\Folder\\File"), "C:\\Folder\\File");
    EXPECT_EQ(FileUtil::fullPathWithoutExtension(""), "");
}

TEST(FileUtil, SafeDeleteFileRemovesAFile) {
    const TestSupport::TempFolder folder;
    const auto path = folder.write("old.png", "x");
    FileUtil::SafeDeleteFile(path.string());
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST(FileUtil, SafeDeleteFileIsQuietAboutWhatIsNotThereOrCannotGo) {
    const TestSupport::TempFolder folder;
    folder.write("neighbour.png", "x");
    EXPECT_NO_THROW(FileUtil::SafeDeleteFile((folder / "missing.png").string()));
    EXPECT_NO_THROW(FileUtil::SafeDeleteFile((folder / "").string()));
    EXPECT_TRUE(std::filesystem::exists(folder / "neighbour.png"));
}

TEST(FileUtil, TheTempPathIsAFolderAndEndsInASeparator) {
    const std::wstring path = FileUtil::_GetTempPath();
    ASSERT_FALSE(path.empty());
    EXPECT_TRUE(path.back() == L'/' || path.back() == L'\\');
    EXPECT_EQ(path.find(L'\0'), std::wstring::npos);
    EXPECT_TRUE(std::filesystem::is_directory(Utf8FromWide(path)));
}

TEST(FileUtil, TheModulePathLosesAsManyCharactersAsTheTestProgramsNameHas) {
    const std::wstring program = WideFromUtf8(std::filesystem::read_symlink("/proc/self/exe").string());
    const std::size_t cut = std::wstring(L"KestoThumbnailerTest.exe").size();
    ASSERT_GE(program.size(), cut);
    EXPECT_EQ(FileUtil::_GetModulePathForKtnTest(), program.substr(0, program.size() - cut));
}

} // namespace KestoThumbnailer
