#include "PictureFile.h"
#include "ProgramRun.h"

#include "support/JpegFile.h"
#include "support/PdfFile.h"
#include "support/TempFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::AnyOf;
using testing::Contains;
using testing::Each;
using testing::HasSubstr;
using testing::Not;

namespace {

/// The paths of all shared objects that a run loads, at its start or later, as the dynamic linker tells them.
std::vector<std::string> objectsLoadedBy(const std::vector<std::string>& arguments) {
    const TestSupport::TempFolder folder;
    const ProgramRun run = runProgram(
        arguments, {.environment = {"LD_DEBUG=files", "LD_DEBUG_OUTPUT=" + (folder / "log").string()}});
    EXPECT_EQ(run.exitStatus, 0) << run.errors;
    constexpr std::string_view mark = "calling init: ";
    std::vector<std::string> objects;
    for (const auto& entry : std::filesystem::directory_iterator(folder / "")) {
        std::ifstream log(entry.path());
        for (std::string line; std::getline(log, line);)
            if (const std::size_t at = line.find(mark); at != std::string::npos)
                objects.push_back(line.substr(at + mark.size()));
    }
    return objects;
}

const auto heavyObject = AnyOf(HasSubstr("libavcodec"), HasSubstr("libavformat"), HasSubstr("libswscale"),
                               HasSubstr("libpoppler"));
const auto ourLibrary = HasSubstr("libKestoThumbnailer.so");

std::vector<unsigned char> grayJpeg() {
    const TestSupport::JpegFile file = {
        .width = 64, .height = 48, .pixelAt = [](int, int) { return 0x808080U; }};
    return file.bytes();
}

} // namespace

TEST(LoadedObjects, VersionLoadsNoMediaLibraryAndNoDocumentLibrary) {
    const std::vector<std::string> objects = objectsLoadedBy({"--version"});
    EXPECT_THAT(objects, Contains(ourLibrary));
    EXPECT_THAT(objects, Each(Not(heavyObject)));
}

TEST(LoadedObjects, JpegLoadsNoMediaLibraryAndNoDocumentLibrary) {
    const TestSupport::TempFolder folder;
    const std::string input = folder.write("in.jpg", grayJpeg());
    const std::vector<std::string> objects = objectsLoadedBy({"thumb", input, "-o", folder / "out.png"});
    EXPECT_THAT(objects, Contains(ourLibrary));
    EXPECT_THAT(objects, Each(Not(heavyObject)));
}

TEST(LoadedObjects, DocumentLoadsTheDocumentLibrary) {
    const TestSupport::TempFolder folder;
    const TestSupport::PdfFile page = {.widthInPoints = 100, .heightInPoints = 100, .content = ""};
    const std::string input = folder.write("in.pdf", page.text());
    EXPECT_THAT(objectsLoadedBy({"thumb", input, "-o", folder / "out.png"}),
                Contains(HasSubstr("libpoppler")));
}
