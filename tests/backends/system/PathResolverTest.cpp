#include "system/PathResolver.h"

#include "backends/system/TempFolder.h"

#include <gtest/gtest.h>

#include <climits>

namespace SystemBackend {

namespace {

TEST(ResolvePath, GivesAnExistingPathAsItStands) {
    const TempFolder temp;
    const std::string file = temp.file("Photos/Summer.JPG");
    EXPECT_EQ(resolvePath(file), file);
}

TEST(ResolvePath, GivesAMissingPathUnchanged) {
    const TempFolder temp;
    temp.folder("Photos");
    EXPECT_EQ(resolvePath(temp / "photos\\missing.jpg"), temp / "photos\\missing.jpg");
    EXPECT_EQ(resolvePath(temp / "nowhere/photo.jpg"), temp / "nowhere/photo.jpg");
}

TEST(ResolvePath, TakesBackslashesForSlashes) {
    const TempFolder temp;
    const std::string file = temp.file("a/b/c.png");
    EXPECT_EQ(resolvePath(temp / "a\\b\\c.png"), file);
    EXPECT_EQ(resolvePath(temp / "a\\b/c.png"), file);
}

TEST(ResolvePath, PrefersANameThatReallyHasABackslash) {
    const TempFolder temp;
    temp.file("a/b.png");
    const std::string real = temp.file("a\\b.png");
    EXPECT_EQ(resolvePath(temp / "a\\b.png"), real);
}

TEST(ResolvePath, PrefersBackslashesAsSlashesToAnotherCase) {
    const TempFolder temp;
    temp.file("A/B.png");
    const std::string exact = temp.file("a/b.png");
    EXPECT_EQ(resolvePath(temp / "a\\b.png"), exact);
}

TEST(ResolvePath, IgnoresTheCaseOfEveryPart) {
    const TempFolder temp;
    const std::string file = temp.file("Holiday Photos/Deep/Summer.JPG");
    EXPECT_EQ(resolvePath(temp / "HOLIDAY photos/deep/sUMMER.jpg"), file);
    EXPECT_EQ(resolvePath(temp / "HOLIDAY photos\\deep\\sUMMER.jpg"), file);
}

TEST(ResolvePath, IgnoresCaseBeyondAscii) {
    const TempFolder temp;
    const std::string file = temp.file("Ärger/Привет ΣΊΣΥΦΟΣ.png");
    EXPECT_EQ(resolvePath(temp / "ÄRGER/пРИВЕТ σίσυφος.PNG"), file);
}

TEST(ResolvePath, PrefersTheExactPartToOneAlike) {
    const TempFolder temp;
    temp.file("PHOTOS/b.png");
    const std::string exact = temp.file("photos/B.png");
    EXPECT_EQ(resolvePath(temp / "photos/b.PNG"), exact);
}

TEST(ResolvePath, PrefersTheExactLastPartInAFolderOfAnotherCase) {
    const TempFolder temp;
    temp.file("Photos/A.png");
    const std::string exact = temp.file("Photos/a.png");
    EXPECT_EQ(resolvePath(temp / "photos/a.png"), exact);
}

TEST(ResolvePath, TakesTheFirstOfPartsAlikeInTheOrderOfBytes) {
    const TempFolder temp;
    temp.file("photo.PNG");
    temp.file("Photo.png");
    const std::string first = temp.file("PHoto.png");
    EXPECT_EQ(resolvePath(temp / "pHOTO.png"), first);
}

TEST(ResolvePath, IsNotStoppedByAFileWhereAFolderIsMeant) {
    const TempFolder temp;
    temp.file("data");
    const std::string file = temp.file("DATA/a.png");
    EXPECT_EQ(resolvePath(temp / "data/a.png"), file);
}

TEST(ResolvePath, KeepsSeparatorsAndDots) {
    const TempFolder temp;
    temp.file("Photos/a.png");
    temp.folder("Other");
    EXPECT_EQ(resolvePath(temp / "./OTHER/..//photos/.//A.png"), temp / "./Other/..//Photos/.//a.png");
}

TEST(ResolvePath, FindsAFolderWithAndWithoutASeparatorAtItsEnd) {
    const TempFolder temp;
    const std::string folder = temp.folder("Photos");
    EXPECT_EQ(resolvePath(temp / "photos"), folder);
    EXPECT_EQ(resolvePath(temp / "photos\\"), folder + '/');
}

TEST(ResolvePath, FindsNoFileThatIsNamedLikeAFolder) {
    const TempFolder temp;
    temp.file("Photo.png");
    EXPECT_EQ(resolvePath(temp / "photo.png/"), temp / "photo.png/");
    EXPECT_EQ(resolvePath(temp / "photo.png/inside"), temp / "photo.png/inside");
}

TEST(ResolvePath, StartsAtTheCurrentFolderWithoutALeadingSeparator) {
    const TempFolder temp;
    temp.file("Photos/a.png");
    const CurrentFolder here(temp.folder("Work"));
    EXPECT_EQ(resolvePath("..\\photos\\A.PNG"), "../Photos/a.png");
}

TEST(ResolvePath, FindsAPlainNameInTheCurrentFolder) {
    const TempFolder temp;
    temp.file("a.png");
    const CurrentFolder here(temp.path());
    EXPECT_EQ(resolvePath("A.PNG"), "a.png");
}

TEST(ResolvePath, KeepsBlanksAsTheyAre) {
    const TempFolder temp;
    const std::string file = temp.file(" two  blanks .png");
    EXPECT_EQ(resolvePath(temp / " TWO  BLANKS .png"), file);
    EXPECT_EQ(resolvePath(temp / "TWO  BLANKS .png"), temp / "TWO  BLANKS .png");
}

TEST(ResolvePath, MatchesNamesThatAreNoUtf8) {
    const TempFolder temp;
    const std::string file = temp.file("caf\xE9.png");
    EXPECT_EQ(resolvePath(temp / "CAF\xE9.PNG"), file);
}

TEST(ResolvePath, KnowsNoDriveLetters) {
    const TempFolder temp;
    temp.file("Photos/a.png");
    const CurrentFolder here(temp.path());
    EXPECT_EQ(resolvePath("C:\\Photos\\a.png"), "C:\\Photos\\a.png");
}

TEST(ResolvePath, FollowsLinksToFolders) {
    const TempFolder temp;
    temp.file("Real/A.png");
    const std::string link = temp.link("Link", "Real");
    EXPECT_EQ(resolvePath(temp / "link/a.png"), link + "/A.png");
}

TEST(ResolvePath, PassesOverADanglingLink) {
    const TempFolder temp;
    temp.link("PHOTO.png", "nowhere");
    EXPECT_EQ(resolvePath(temp / "PHOTO.png"), temp / "PHOTO.png");
    const std::string file = temp.file("photo.png");
    EXPECT_EQ(resolvePath(temp / "PHOTO.png"), file);
    EXPECT_EQ(resolvePath(temp / "Photo.PNG"), file);
}

TEST(ResolvePath, FindsNothingInALoopOfLinks) {
    const TempFolder temp;
    temp.link("Loop", "Pool");
    temp.link("Pool", "Loop");
    for (const std::string path : {"Loop", "loop", "loop/a.png", "Loop/a.png"})
        EXPECT_EQ(resolvePath(temp / path), temp / path);
}

TEST(ResolvePath, FindsNothingUnderNamesThatAreTooLong) {
    const TempFolder temp;
    temp.file("Photo.png");
    std::string longPath = temp.path();
    while (longPath.size() < PATH_MAX)
        longPath += "/.";
    longPath += "/photo.png"; // exists, but no system call takes so long a path
    const std::string longName = temp / std::string(300, 'a');
    EXPECT_EQ(resolvePath(longPath), longPath);
    EXPECT_EQ(resolvePath(longName), longName);
}

TEST(ResolvePath, FindsShortPartsBehindBackslashesHoweverLongThePath) {
    const TempFolder temp;
    const std::string part(100, 'x');
    const std::string file = temp.file(part + '/' + part + '/' + part + "/a.png");
    EXPECT_EQ(resolvePath(temp / (part + '\\' + part + '\\' + part + "\\A.png")), file);
}

TEST(ResolvePath, FindsNothingUnderAnEmptyPath) {
    EXPECT_EQ(resolvePath(""), "");
}

TEST(ResolvePath, FindsTheRoot) {
    EXPECT_EQ(resolvePath("/"), "/");
    EXPECT_EQ(resolvePath("\\"), "/");
    EXPECT_EQ(resolvePath("\\PROC\\Self\\MAPS"), "/proc/self/maps");
}

TEST(ResolvePath, PassesOverAFolderThatMayNotBeSearched) {
    const TempFolder temp;
    temp.file("CLOSED/a.png");
    const std::string file = temp.file("Closed/deep/a.png");
    std::filesystem::permissions(temp / "CLOSED", std::filesystem::perms::none);
    const OrdinaryUser user;
    EXPECT_EQ(resolvePath(temp / "CLOSED/A.png"), temp / "CLOSED/A.png");
    EXPECT_EQ(resolvePath(temp / "closed/a.png"), temp / "closed/a.png");
}

TEST(ResolvePath, WalksThroughAFolderThatMayOnlyBeSearched) {
    const TempFolder temp;
    const std::string file = temp.file("Hidden/Photos/a.png");
    std::filesystem::permissions(temp / "Hidden", static_cast<std::filesystem::perms>(0111));
    const OrdinaryUser user;
    EXPECT_EQ(resolvePath(temp / "hidden/Photos/A.PNG"), file);
    EXPECT_EQ(resolvePath(temp / "hidden/photos/a.png"), temp / "hidden/photos/a.png");
}

TEST(ResolvePath, CreatesNothing) {
    const TempFolder temp;
    (void)resolvePath(temp / "new\\file.png");
    (void)resolvePathForWriting(temp / "new\\file.png");
    EXPECT_TRUE(temp.names().empty());
}

TEST(ResolvePathForWriting, GivesAnExistingFilesOwnName) {
    const TempFolder temp;
    const std::string file = temp.file("Photos/A.png");
    EXPECT_EQ(resolvePathForWriting(temp / "photos\\A.png"), file);
}

TEST(ResolvePathForWriting, NeverTakesAFileForOneOfAnotherCase) {
    const TempFolder temp;
    temp.file("photo.jpg");
    EXPECT_EQ(resolvePathForWriting(temp / "photo.JPG"), temp / "photo.JPG");
}

TEST(ResolvePathForWriting, PutsANewFileIntoTheExistingFolderUnderItsNameAsItStands) {
    const TempFolder temp;
    const std::string folder = temp.folder("Photos");
    EXPECT_EQ(resolvePathForWriting(temp / "photos\\New.PNG"), folder + "/New.PNG");
    EXPECT_EQ(resolvePathForWriting(temp / "PHOTOS/New.PNG"), folder + "/New.PNG");
}

TEST(ResolvePathForWriting, PutsAPlainNameIntoTheCurrentFolder) {
    const TempFolder temp;
    const CurrentFolder here(temp.path());
    EXPECT_EQ(resolvePathForWriting("New.PNG"), "New.PNG");
}

TEST(ResolvePathForWriting, PutsANewFileBehindABackslashIntoTheRoot) {
    EXPECT_EQ(resolvePathForWriting("\\kesto-missing.png"), "/kesto-missing.png");
}

TEST(ResolvePathForWriting, KeepsABackslashInAFoldersRealName) {
    const TempFolder temp;
    const std::string folder = temp.folder("odd\\name");
    EXPECT_EQ(resolvePathForWriting(temp / "odd\\name\\new.png"), folder + "/new.png");
}

TEST(ResolvePathForWriting, NeverMakesABackslashPartOfANewName) {
    const TempFolder temp;
    EXPECT_EQ(resolvePathForWriting(temp / "nowhere\\new.png"), temp / "nowhere/new.png");
}

TEST(ResolvePathForWriting, TakesADanglingLinkForTheFileThatItNames) {
    const TempFolder temp;
    temp.file("photo.png");
    const std::string link = temp.link("PHOTO.png", "nowhere");
    EXPECT_EQ(resolvePathForWriting(temp / "PHOTO.png"), link);
}

} // namespace

} // namespace SystemBackend
