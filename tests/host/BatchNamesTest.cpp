#include "BatchRun.h"

#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::HasSubstr;

namespace {

class BatchNames : public BatchRun {
protected:
    BatchNames() {
        for (const char* name : {"x", "y", "z"})
            std::filesystem::create_directory(folder / name);
    }
};

class BatchOddNames : public BatchRun, public testing::WithParamInterface<const char*> {};

} // namespace

TEST_F(BatchNames, LastExtensionIsReplaced) {
    picture("photo.tar.png", 20);
    picture(".hidden", 21);
    picture("bare", 22);
    EXPECT_EQ(batch({"--format", "bmp", "photo.tar.png", ".hidden", "bare"}).exitStatus, 0);
    EXPECT_THAT(written(), ElementsAre(".hidden.bmp", "bare.bmp", "photo.tar.bmp"));
}

TEST_F(BatchNames, EqualNamesAreNumberedInTheOrderOfTheInputs) {
    picture("x/a.png", 20);
    picture("y/a.png", 30);
    picture("z/a.png", 40);
    const ProgramRun run = batch({"y/a.png", "x/a.png", "z/a.png"});
    EXPECT_EQ(run.exitStatus, 0) << run.errors;
    EXPECT_EQ(widthOf("out/a.png"), 30);
    EXPECT_EQ(widthOf("out/a-2.png"), 20);
    EXPECT_EQ(widthOf("out/a-3.png"), 40);
}

TEST_F(BatchNames, TheSameInputTwiceIsWrittenTwice) {
    picture("a.png", 20);
    EXPECT_EQ(batch({"a.png", "a.png"}).exitStatus, 0);
    EXPECT_THAT(written(), ElementsAre("a-2.png", "a.png"));
}

TEST_F(BatchNames, InputThatIsNamedLikeANumberedOneIsNumberedToo) {
    picture("x/a.png", 20);
    picture("y/a.png", 30);
    picture("a-2.png", 40);
    EXPECT_EQ(batch({"x/a.png", "y/a.png", "a-2.png"}).exitStatus, 0);
    EXPECT_EQ(widthOf("out/a-2.png"), 30);
    EXPECT_EQ(widthOf("out/a-2-2.png"), 40);
}

TEST_F(BatchNames, NumberThatAnInputHasIsPassedOver) {
    picture("a-2.png", 40);
    picture("x/a.png", 20);
    picture("y/a.png", 30);
    EXPECT_EQ(batch({"a-2.png", "x/a.png", "y/a.png"}).exitStatus, 0);
    EXPECT_EQ(widthOf("out/a-2.png"), 40);
    EXPECT_EQ(widthOf("out/a-3.png"), 30);
}

TEST_F(BatchNames, NamesThatDifferInExtensionOnlyAreEqual) {
    picture("a.png", 20);
    picture("a.jpg", 30);
    EXPECT_EQ(batch({"a.png", "a.jpg"}).exitStatus, 0);
    EXPECT_EQ(widthOf("out/a-2.png"), 30);
}

TEST_F(BatchNames, NamesThatDifferInCaseOnlyAreEqual) {
    picture("a.png", 20);
    picture("A.png", 30);
    EXPECT_EQ(batch({"a.png", "A.png"}).exitStatus, 0);
    EXPECT_THAT(written(), ElementsAre("A-2.png", "a.png"));
}

TEST_F(BatchNames, InputWithoutAPictureKeepsItsName) {
    picture("x/a.png", 20);
    EXPECT_EQ(batch({"nothing/a.png", "x/a.png"}).exitStatus, 1);
    EXPECT_THAT(written(), ElementsAre("a-2.png"));
}

TEST_F(BatchNames, ManyEqualNamesAreAllNumbered) {
    picture("a.png", 20);
    std::string lines;
    for (int i = 0; i < 300; ++i)
        lines += "a.png\n";
    EXPECT_EQ(batch({"-"}, lines).exitStatus, 0);
    EXPECT_EQ(written().size(), 300);
    EXPECT_EQ(widthOf("out/a-300.png"), 20);
}

TEST_F(BatchNames, FileOfAnEarlierRunIsReplaced) {
    picture("a.png", 20);
    picture("out/a.png", 5);
    EXPECT_EQ(batch({"a.png"}).exitStatus, 0);
    EXPECT_EQ(batch({"-"}, "a.png\n").exitStatus, 0);
    EXPECT_THAT(written(), ElementsAre("a.png"));
    EXPECT_EQ(widthOf("out/a.png"), 20);
}

TEST_F(BatchNames, InputIsNotReplaced) {
    picture("a.png", 200);
    EXPECT_EQ(runHere({"batch", "--size", "20x0", "a.png"}).exitStatus, 0);
    EXPECT_EQ(widthOf("a.png"), 200);
    EXPECT_EQ(widthOf("a-2.png"), 20);
}

TEST_F(BatchNames, LaterInputIsNotReplaced) {
    picture("x/a.png", 30);
    picture("out/a.png", 200);
    EXPECT_EQ(batch({"x/a.png", "out/a.png", "--size", "20x0"}).exitStatus, 0);
    EXPECT_EQ(widthOf("out/a.png"), 200);
    EXPECT_THAT(written(), ElementsAre("a-2.png", "a-3.png", "a.png"));
}

TEST_F(BatchNames, InputUnderAnotherSpellingIsNotReplaced) {
    picture("out/a.png", 200);
    picture("x/a.png", 30);
    EXPECT_EQ(batch({"x/a.png", "OUT\\A.PNG"}).exitStatus, 0);
    EXPECT_EQ(widthOf("out/a.png"), 200);
}

TEST_F(BatchNames, InputBehindALinkIsNotReplaced) {
    picture("x/original.png", 200);
    std::filesystem::create_symlink(folder / "x/original.png", folder / "out/a.png");
    picture("y/a.png", 30);
    EXPECT_EQ(batch({"y/a.png", "x/original.png"}).exitStatus, 0);
    EXPECT_EQ(batch({"-"}, "y/a.png\nx/original.png\n").exitStatus, 0);
    EXPECT_EQ(widthOf("x/original.png"), 200);
    EXPECT_EQ(widthOf("out/a-2.png"), 30);
}

TEST_F(BatchNames, LinesFromTheOutputFolderReplaceNothingThere) {
    picture("a.jpg", 30);
    picture("a.png", 200);
    EXPECT_EQ(runHere({"batch", "--size", "20x0", "-"}, "a.jpg\na.png\n").exitStatus, 0);
    EXPECT_EQ(widthOf("a.png"), 200);
    EXPECT_EQ(widthOf("a-2.png"), 20);
    EXPECT_EQ(widthOf("a-3.png"), 20);
}

TEST_F(BatchNames, NullByteInALineIsABadName) {
    picture("a.png", 20);
    const ProgramRun run = batch({"-"}, std::string("a.png\0.png\n", 11));
    EXPECT_EQ(run.exitStatus, 1);
    EXPECT_THAT(run.errors, HasSubstr("null byte"));
    EXPECT_EQ(written().size(), 0);
}

TEST_P(BatchOddNames, AreTakenAsTheyStand) {
    const std::string name = GetParam();
    picture(name, 30);
    const ProgramRun run = batch({"--", name});
    EXPECT_EQ(run.exitStatus, 0) << run.errors;
    EXPECT_EQ(widthOf("out/" + name + ".png"), 30);
}

TEST_P(BatchOddNames, AreTakenAsTheyStandAsLines) {
    const std::string name = GetParam();
    picture(name, 30);
    const ProgramRun run = batch({"-"}, name + '\n');
    EXPECT_EQ(run.exitStatus, 0) << run.errors;
    EXPECT_EQ(widthOf("out/" + name + ".png"), 30);
}

INSTANTIATE_TEST_SUITE_P(Odd, BatchOddNames,
                         testing::Values("with blanks in it", " ", "\xC3\xA4\xE4\xBD\xA0\xF0\x9F\x8E\xA8",
                                         "-o", "--help", "--", "batch", "[a,b]", "[a]", "{x}", "a=b",
                                         "\"quoted\"", "'", "%41", "tab\there", "a;b&c|d$e", "~",
                                         "caf\x65\xCC\x81", "#x", "%%"));
