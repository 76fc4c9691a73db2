#include "BatchRun.h"

#include "support/PdfFile.h"

#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

using Batch = BatchRun;

TEST_F(Batch, WritesAThumbnailOfEachInput) {
    picture("a.png", 20);
    picture("b.png", 30);
    const ProgramRun run = batch({"a.png", "b.png"});
    EXPECT_EQ(run.exitStatus, 0) << run.errors;
    EXPECT_THAT(written(), ElementsAre("a.png", "b.png"));
    EXPECT_EQ(widthOf("out/a.png"), 20);
    EXPECT_EQ(widthOf("out/b.png"), 30);
}

TEST_F(Batch, WritesIntoTheCurrentFolderByDefault) {
    std::filesystem::create_directory(folder / "photos");
    picture("photos/a.png", 20);
    EXPECT_EQ(runHere({"batch", "photos/a.png"}).exitStatus, 0);
    EXPECT_EQ(widthOf("a.png"), 20);
}

TEST_F(Batch, ScalesIntoTheBox) {
    folder.write("a.png", redAndBluePng(300, 200));
    EXPECT_EQ(batch({"--size", "60x60", "a.png"}).exitStatus, 0);
    const PictureFile thumbnail = readPng(folder / "out/a.png");
    EXPECT_EQ(std::pair(thumbnail.width, thumbnail.height), std::pair(60, 40));
    EXPECT_EQ(thumbnail.at(10, 20), red);
    EXPECT_EQ(thumbnail.at(50, 20), blue);
}

TEST_F(Batch, MakesPicturesAloneThatAreLargerThanItsMemory) {
    for (const char* name : {"a.png", "b.png", "c.png"})
        folder.write(name, redAndBluePng(1024, 512)); // 2 MiB when decoded
    const ProgramRun run = batch({"--memory", "1", "--jobs", "4", "a.png", "b.png", "c.png"});
    EXPECT_EQ(run.exitStatus, 0) << run.errors;
    EXPECT_THAT(written(), ElementsAre("a.png", "b.png", "c.png"));
}

TEST_F(Batch, ShowsDocumentsBesidePictures) {
    const TestSupport::PdfFile page = {.widthInPoints = 300, .heightInPoints = 150, .content = ""};
    folder.write("page.pdf", page.text());
    picture("a.png", 20);
    EXPECT_EQ(batch({"page.pdf", "a.png"}).exitStatus, 0);
    EXPECT_EQ(widthOf("out/page.png"), 184);
    EXPECT_EQ(widthOf("out/a.png"), 20);
}

TEST_F(Batch, FormatPicksWhatIsWritten) {
    picture("a.png", 20);
    const std::pair<std::string, std::string> formats[] = {
        {"png", "\x89PNG\r\n\x1A\n"},
        {"jpg", "\xFF\xD8\xFF"},
        {"jpeg", "\xFF\xD8\xFF"},
        {"gif", "GIF8"},
        {"bmp", "BM"},
    };
    for (const auto& [format, signature] : formats) {
        EXPECT_EQ(batch({"--format", format, "a.png"}).exitStatus, 0) << format;
        EXPECT_THAT(TestSupport::readFile(folder / ("out/a." + format)), StartsWith(signature));
    }
}

TEST_F(Batch, TakesTimeAndTrackOfInputsThatHaveNeither) {
    picture("a.png", 20);
    EXPECT_EQ(batch({"--time", "1.5", "--track", "2", "a.png"}).exitStatus, 0);
    EXPECT_EQ(widthOf("out/a.png"), 20);
}

TEST_F(Batch, BadInputsDoNotStopTheOthers) {
    picture("a.png", 20);
    folder.write("letter.png", "Dear Sir or Madam,");
    picture("z.png", 30);
    const ProgramRun run = batch({"a.png", "nothing.png", "letter.png", "out", "z.png"});
    EXPECT_EQ(run.exitStatus, 1);
    EXPECT_THAT(written(), ElementsAre("a.png", "z.png"));
    for (const char* sentence : {"kesto-thumbnail: \"nothing.png\" does not exist.\n",
                                 "kesto-thumbnail: \"letter.png\" is no picture, document, video or project "
                                 "that can be read.\n",
                                 "kesto-thumbnail: \"out\" is not a regular file.\n"})
        EXPECT_THAT(run.errors, HasSubstr(sentence));
}

TEST_F(Batch, TellsWhatBecameOfEachInputAndOfAll) {
    picture("a.png", 20);
    const ProgramRun run = batch({"--jobs", "1", "a.png", "nothing.png", "bad\xFF.png"});
    EXPECT_THAT(run.output, IsEmpty());
    EXPECT_THAT(run.errors, HasSubstr("a.png -> out/a.png\n"));
    EXPECT_THAT(run.errors, HasSubstr("kesto-thumbnail: 1 written, 1 without picture, 1 failed; "));
    EXPECT_THAT(run.errors, EndsWith("/s\n"));
}

TEST_F(Batch, OutputThatCannotBeWrittenIsAFailureOfThatInputAlone) {
    picture("a.png", 20);
    picture("b.png", 30);
    std::filesystem::create_directory(folder / "out/a.png");
    const ProgramRun run = batch({"a.png", "b.png"});
    EXPECT_EQ(run.exitStatus, 1);
    EXPECT_THAT(run.errors, HasSubstr("\"out/a.png\" can't be written: there is a folder of that name."));
    EXPECT_THAT(run.errors, HasSubstr("1 written, 0 without picture, 1 failed"));
    EXPECT_EQ(widthOf("out/b.png"), 30);
}

TEST_F(Batch, AnyNumberOfJobsMakesTheSameFiles) {
    std::vector<std::string> arguments = {"--jobs", "1"};
    for (int i = 1; i <= 24; ++i) {
        const std::string name = "picture" + std::to_string(i) + ".png";
        picture(name, 10 + i);
        arguments.insert(arguments.end(), {name, "./" + name});
    }
    std::filesystem::create_directory(folder / "twice");
    EXPECT_EQ(batch(arguments).exitStatus, 0);
    arguments[1] = "2";
    arguments.insert(arguments.begin(), {"batch", "--out-dir", "twice"});
    EXPECT_EQ(runHere(arguments).exitStatus, 0);
    ASSERT_EQ(written().size(), 48);
    ASSERT_EQ(written("twice"), written());
    for (const std::string& name : written())
        EXPECT_EQ(TestSupport::readFile(folder / "twice" / name),
                  TestSupport::readFile(folder / "out" / name))
            << name;
}

TEST_F(Batch, MoreJobsThanInputsAreNoError) {
    picture("a.png", 20);
    EXPECT_EQ(batch({"--jobs", "256", "a.png"}).exitStatus, 0);
    EXPECT_EQ(widthOf("out/a.png"), 20);
}

TEST_F(Batch, WithoutAnInputIsWrongUsage) {
    const ProgramRun run = runHere({"batch"});
    EXPECT_EQ(run.exitStatus, 2);
    EXPECT_THAT(run.errors,
                StartsWith("kesto-thumbnail batch: INPUT: expected at least one file, or - to read "
                           "names from standard input\n"));
}

TEST_F(Batch, LinesBesideArgumentsAreWrongUsage) {
    for (const std::vector<std::string>& inputs : {std::vector<std::string>{"-", "a.png"}, {"a.png", "-"}}) {
        const ProgramRun run = batch(inputs);
        EXPECT_EQ(run.exitStatus, 2);
        EXPECT_THAT(run.errors, StartsWith("kesto-thumbnail batch: INPUT: expected nothing beside -"));
    }
}

TEST_F(Batch, WrongValueIsToldWithWhatWasExpected) {
    const std::pair<std::string, std::string> expectations[] = {
        {"--size", "expected WIDTHxHEIGHT in pixels, each 0 (no bound) to 32767, found \"x\""},
        {"--format", "expected one of png, jpg, jpeg, gif, bmp, found \"x\""},
        {"--jobs", "expected a whole number from 1 to 256, found \"x\""},
        {"--memory", "expected a whole number of mebibytes from 1 to 1048576, found \"x\""},
        {"--out-dir", "expected a folder that is there, found \"x\""},
    };
    for (const auto& [option, sentence] : expectations) {
        const ProgramRun run = runHere({"batch", "a.png", option, "x"});
        EXPECT_EQ(run.exitStatus, 2) << option;
        EXPECT_THAT(run.errors, StartsWith("kesto-thumbnail batch: " + option + ": " + sentence + '\n'));
    }
}

TEST_F(Batch, JobsAreAWholeNumberInRange) {
    for (const char* value : {"", "0", "-1", "1.5", "257", "99999999999", "0x1"})
        EXPECT_EQ(batch({"a.png", "--jobs", value}).exitStatus, 2) << value;
}

TEST_F(Batch, HelpNamesEveryOption) {
    const ProgramRun run = runHere({"batch", "--help"});
    EXPECT_EQ(run.exitStatus, 0);
    for (const char* word : {"INPUT", "--out-dir", "--format", "--jobs", "--memory", "--size", "0x92",
                             "--time", "--track", "--json"})
        EXPECT_THAT(run.output, HasSubstr(word));
}
