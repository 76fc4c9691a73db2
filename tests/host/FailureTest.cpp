#include "PictureFile.h"
#include "ProgramRun.h"

#include "support/PdfFile.h"
#include "support/TempFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <set>

#include <sys/stat.h>
#include <unistd.h>

using testing::IsEmpty;
using testing::Not;

namespace {

// Without these rights root is refused like anybody else.
const std::vector<std::string> withoutPrivileges =
    ::geteuid() == 0 ? std::vector<std::string>{"setpriv", "--bounding-set=-all", "--inh-caps=-all"}
                     : std::vector<std::string>{};

std::set<std::string> namesIn(const std::filesystem::path& folder) {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        names.insert(entry.path().filename());
    return names;
}

/// A failing run: what stands in `folder` must not change.
class Failures : public testing::Test {
protected:
    std::string reasonFor(const std::string& input, const std::string& output,
                          const RunOptions& options = {}) const {
        const std::set<std::string> before = namesIn(folder / "");
        const ProgramRun run = runProgram({"thumb", input, "-o", output, "--json"}, options);
        EXPECT_EQ(run.exitStatus, 1) << run.errors;
        EXPECT_THAT(run.errors, Not(IsEmpty()));
        EXPECT_EQ(namesIn(folder / ""), before);
        const auto report = nlohmann::json::parse(run.output);
        EXPECT_THAT(report.at("message").get<std::string>(), Not(IsEmpty()));
        return report.at("reason");
    }
    std::string reasonFor(const std::string& input) const { return reasonFor(input, folder / "out.png"); }

    TestSupport::TempFolder folder;
};

std::vector<unsigned char> headerOfAHugePng() {
    std::vector<unsigned char> bytes = redAndBluePng(1, 1);
    const std::vector<unsigned char> size = {0x00, 0x01, 0x86, 0xA0, 0x00, 0x01, 0x86, 0xA0};
    const std::vector<unsigned char> checksum = {0xA8, 0x52, 0x0B, 0xC8};
    std::copy(size.begin(), size.end(), bytes.begin() + 16);
    std::copy(checksum.begin(), checksum.end(), bytes.begin() + 29);
    return bytes;
}

} // namespace

TEST_F(Failures, MissingFileIsCalledMissing) {
    EXPECT_EQ(reasonFor(folder / "nothing.png"), "missing");
}

TEST_F(Failures, StandardErrorHasTheSentenceOfTheReport) {
    const ProgramRun run = runProgram({"thumb", folder / "nothing.png", "-o", folder / "out.png", "--json"});
    const std::string sentence = nlohmann::json::parse(run.output).at("message");
    EXPECT_EQ(run.errors, "kesto-thumbnail: " + sentence + '\n');
}

TEST_F(Failures, EmptyFileIsCalledEmpty) {
    EXPECT_EQ(reasonFor(folder.write("empty.png", "")), "empty");
}

TEST_F(Failures, FolderIsNotAFile) {
    std::filesystem::create_directory(folder / "folder.png");
    EXPECT_EQ(reasonFor(folder / "folder.png"), "not-a-file");
}

TEST_F(Failures, PipeIsNotAFileAndIsNotWaitedFor) {
    const std::string pipe = folder / "pipe.png";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(reasonFor(pipe), "not-a-file");
}

TEST_F(Failures, FileThatMayNotBeReadIsUnreadable) {
    const std::filesystem::path input = folder.write("secret.png", redAndBluePng(8, 8));
    std::filesystem::permissions(input, std::filesystem::perms::none);
    EXPECT_EQ(reasonFor(input, folder / "out.png", {.before = withoutPrivileges}), "unreadable");
}

TEST_F(Failures, TextIsOfUnknownFormat) {
    EXPECT_EQ(reasonFor(folder.write("letter.png", "Dear Sir or Madam,")), "unknown-format");
}

TEST_F(Failures, HalfAPictureIsTruncated) {
    std::vector<unsigned char> bytes = redAndBluePng(64, 64);
    bytes.resize(bytes.size() / 2);
    EXPECT_EQ(reasonFor(folder.write("half.png", bytes)), "truncated");
}

TEST_F(Failures, HeaderOfAHugePictureIsTooLarge) {
    EXPECT_EQ(reasonFor(folder.write("huge.png", headerOfAHugePng())), "too-large");
}

TEST_F(Failures, EnvironmentSetsThePixelBudget) {
    const std::string input = folder.write("in.png", redAndBluePng(11, 10));
    EXPECT_EQ(reasonFor(input, folder / "out.png", {.environment = {"KESTO_PIXEL_BUDGET=109"}}), "too-large");
    EXPECT_EQ(
        runProgram({"thumb", input, "-o", folder / "out.png"}, {.environment = {"KESTO_PIXEL_BUDGET=110"}})
            .exitStatus,
        0);
}

TEST_F(Failures, DocumentUnderAPasswordIsEncrypted) {
    const TestSupport::PdfFile page = {.widthInPoints = 100, .heightInPoints = 100, .encrypted = true};
    EXPECT_EQ(reasonFor(folder.write("secret.pdf", page.text())), "encrypted");
}

TEST_F(Failures, DocumentWithoutPagesHasNoPages) {
    const TestSupport::PdfFile page = {.pages = 0};
    EXPECT_EQ(reasonFor(folder.write("blank.pdf", page.text())), "no-pages");
}

TEST_F(Failures, NameThatIsNotUtf8IsABadName) {
    const std::string input = folder.write("in.png", redAndBluePng(8, 8));
    const std::string badInput = folder.write("bad\xFF.png", redAndBluePng(8, 8));
    EXPECT_EQ(reasonFor(badInput), "bad-name");
    EXPECT_EQ(reasonFor(input, (folder / "bad\xC3").string() + ".png"), "bad-name");
}

TEST_F(Failures, MissingOutputFolderIsNotMade) {
    const std::string input = folder.write("in.png", redAndBluePng(8, 8));
    EXPECT_EQ(reasonFor(input, folder / "none" / "out.png"), "not-written");
}

TEST_F(Failures, ClosedOutputFolderStaysEmpty) {
    const std::string input = folder.write("in.png", redAndBluePng(8, 8));
    const std::filesystem::path closed = folder / "closed";
    std::filesystem::create_directory(closed);
    std::filesystem::permissions(closed,
                                 std::filesystem::perms::owner_read | std::filesystem::perms::owner_exec);
    EXPECT_EQ(reasonFor(input, closed / "out.png", {.before = withoutPrivileges}), "not-written");
    EXPECT_THAT(namesIn(closed), IsEmpty());
    std::filesystem::permissions(closed, std::filesystem::perms::owner_all);
}

TEST_F(Failures, OutputThatIsAFolderIsNotWritten) {
    const std::string input = folder.write("in.png", redAndBluePng(8, 8));
    std::filesystem::create_directory(folder / "out.png");
    EXPECT_EQ(reasonFor(input), "not-written");
}

TEST_F(Failures, WriteThatFailsInTheMiddleLeavesTheOldFile) {
    const std::string input = folder.write("in.png", redAndBluePng(300, 200));
    const std::string output = folder.write("out.bmp", "old");
    // One block of 512 bytes is all that a file may have.
    const RunOptions limited = {.before = {"sh", "-c", "trap '' XFSZ; ulimit -f 1; exec \"$0\" \"$@\""},
                                .outputFile = "/dev/null"};
    EXPECT_EQ(runProgram({"thumb", input, "-o", output}, limited).exitStatus, 1);
    EXPECT_EQ(TestSupport::readFile(output), "old");
    EXPECT_EQ(namesIn(folder / ""), (std::set<std::string>{"in.png", "out.bmp"}));
}

TEST_F(Failures, FailureLeavesTheOldOutput) {
    const std::string output = folder.write("out.png", "old");
    EXPECT_EQ(reasonFor(folder / "nothing.png", output), "missing");
    EXPECT_EQ(TestSupport::readFile(output), "old");
}

TEST_F(Failures, OutputThatIsTheInputIsRefused) {
    const std::vector<unsigned char> bytes = redAndBluePng(300, 200);
    const std::string input = folder.write("in.png", bytes);
    std::filesystem::create_hard_link(input, folder / "link.png");
    std::filesystem::create_symlink(input, folder / "symlink.png");
    for (const char* name : {"in.png", "link.png", "symlink.png"})
        EXPECT_EQ(reasonFor(input, folder / name), "same-file") << name;
    EXPECT_EQ(TestSupport::readFile(input), std::string(bytes.begin(), bytes.end()));
}

TEST_F(Failures, OutputThatIsTheInputInOtherLettersIsRefused) {
    const std::vector<unsigned char> bytes = redAndBluePng(300, 200);
    const std::string input = folder.write("in.png", bytes);
    EXPECT_EQ(reasonFor(folder / "IN.PNG", input), "same-file");
    EXPECT_EQ(reasonFor(input, folder / "IN.PNG"), "same-file");
    EXPECT_EQ(reasonFor(folder / "IN.png", folder / "in.PNG"), "same-file");
    EXPECT_EQ(TestSupport::readFile(input), std::string(bytes.begin(), bytes.end()));
}

TEST_F(Failures, OutputThatIsTheInputInOtherLettersBehindALinkIsRefused) {
    std::filesystem::create_directory(folder / "photos");
    std::filesystem::create_directory_symlink(folder / "photos", folder / "link");
    const std::string input = folder.write("photos/in.png", redAndBluePng(300, 200));
    EXPECT_EQ(reasonFor(input, folder / "link/IN.PNG"), "same-file");
}

TEST_F(Failures, OutputOfTheSameNameDoesNotHideThatTheInputIsMissing) {
    EXPECT_EQ(reasonFor(folder / "nothing.png", folder / "nothing.png"), "missing");
    EXPECT_EQ(reasonFor(folder / "nothing.png", folder / "NOTHING.png"), "missing");
}

TEST_F(Failures, EmptyNameIsCalledMissing) {
    EXPECT_EQ(reasonFor(""), "missing");
}

TEST_F(Failures, NameInAFolderThatIsGoneIsCalledMissing) {
    const std::string removesItsFolder = "mkdir \"$0\" && cd \"$0\" && rmdir \"$0\" && exec \"$@\"";
    EXPECT_EQ(reasonFor("in.png", "out.png", {.before = {"sh", "-c", removesItsFolder, folder / "gone"}}),
              "missing");
}
