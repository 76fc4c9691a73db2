#include "ProjectTextBuilder.h"

#include "KestoMediaLib/CompoundMedia.h"

#include <gtest/gtest.h>

namespace {

using KestoMediaLib::modelTimePerSecond;
using KestoMediaLib::spanOf;
using KestoMediaLib::StitchedMedia;
using MediaTest::errorOf;
using MediaTest::ProjectText;
using MediaTest::readWhole;

const std::string color = R"({"kind": "color", "color": "#000000", "width": 8, "height": 6, "duration": 2})";

std::string stitched(const std::string& parts) {
    return R"({"kind": "stitched", "duration": 1, "parts": [)" + parts + "]}";
}

std::string use(const std::string& name) {
    return R"({"use": ")" + name + R"("})";
}

ProjectText withLibrary(const std::string& library, const std::string& media) {
    ProjectText text = ProjectText::ofMedia(media);
    text.library = library;
    return text;
}

/// Entries "0" to "depth", each of them `copies` times the one before.
std::string tower(int depth, int copies) {
    std::string library = R"({"0": )" + color;
    for (int i = 1; i <= depth; ++i) {
        std::string parts = use(std::to_string(i - 1));
        for (int copy = 1; copy < copies; ++copy)
            parts += "," + use(std::to_string(i - 1));
        library += R"(, ")" + std::to_string(i) + R"(": )" + stitched(parts);
    }
    return library + "}";
}

TEST(ProjectLibrary, EachUseIsACopyWithItsOwnStart) {
    const auto project = readWhole(
        withLibrary(R"({"title": )" + color + "}", use("title") + R"(, {"use": "title", "start": 5})"));
    const auto medias = project->timeline()->mixer()->tracks().at(0)->medias();
    ASSERT_EQ(medias.size(), 2U);
    EXPECT_NE(medias[0], medias[1]);
    EXPECT_EQ(spanOf(*medias[0]).start, 0);
    EXPECT_EQ(spanOf(*medias[1]).start, 5 * modelTimePerSecond);
    EXPECT_EQ(spanOf(*medias[1]).duration, 2 * modelTimePerSecond);
}

TEST(ProjectLibrary, EntriesMayUseEntriesThatComeLater) {
    const auto project = readWhole(withLibrary(
        R"({"a": )" + stitched(use("b") + "," + use("b")) + R"(, "b": )" + color + "}", use("a")));
    const auto media = project->timeline()->mixer()->tracks().at(0)->medias().at(0);
    EXPECT_EQ(dynamic_cast<const StitchedMedia&>(*media).medias().size(), 2U);
}

TEST(ProjectLibrary, RefusesStitchedMediaThatHoldThemselves) {
    EXPECT_EQ(errorOf(withLibrary(R"({"a": )" + stitched(use("a")) + "}", use("a"))),
              "demo.qrlproj: /library/a/parts/0/use: expected no media that holds itself, found a > a");
    EXPECT_EQ(errorOf(withLibrary(R"({"a": )" + stitched(color + "," + use("b")) + R"(, "b": )" +
                                      stitched(use("c")) + R"(, "c": )" + stitched(use("b")) + "}",
                                  "")),
              "demo.qrlproj: /library/c/parts/0/use: expected no media that holds itself, found b > c > b");
}

TEST(ProjectLibrary, RefusesNamesThatAreNotThere) {
    EXPECT_EQ(errorOf(withLibrary("{}", use("intro"))),
              "demo.qrlproj: /tracks/0/media/0/use: expected the name of a media of the library, found "
              "\"intro\"");
    EXPECT_EQ(errorOf(withLibrary("[]", "")),
              "demo.qrlproj: /library: expected an object, found an empty array");
}

TEST(ProjectLibrary, ReadsEntriesThatNothingUses) {
    EXPECT_EQ(errorOf(withLibrary(R"({"a": {"kind": "video", "duration": 1}})", "")),
              "demo.qrlproj: /library/a: expected a member \"file\", found none");
}

TEST(ProjectLibrary, AUseHasNoOtherMembers) {
    EXPECT_EQ(
        errorOf(withLibrary(R"({"a": )" + color + "}", R"({"use": "a", "duration": 3})")),
        "demo.qrlproj: /tracks/0/media/0/duration: expected one of the members start, use, found another");
}

TEST(ProjectLibrary, AGapStaysAPartOfStitchedMedia) {
    EXPECT_EQ(errorOf(withLibrary(R"({"a": {"kind": "gap", "duration": 1}})", use("a"))),
              "demo.qrlproj: /tracks/0/media/0/use: expected a gap as a part of stitched media alone");
}

TEST(ProjectLibrary, MediaLieInsideOneAnotherToALimit) {
    EXPECT_EQ(errorOf(withLibrary(tower(32, 1), use("32"))), "read");
    EXPECT_NE(errorOf(withLibrary(tower(33, 1), "")).find("expected at most 32 media inside one another"),
              std::string::npos);
}

TEST(ProjectLibrary, TheOrderOfReadingDoesNotChangeTheLimit) {
    const auto reversed = [](int depth) {
        std::string library = "{";
        for (int i = 0; i < depth; ++i)
            library += R"("a)" + std::to_string(100 + i) + R"(": )" +
                       stitched(use("a" + std::to_string(101 + i))) + ",";
        return library + R"("a)" + std::to_string(100 + depth) + R"(": )" + color + "}";
    };
    EXPECT_EQ(errorOf(withLibrary(reversed(32), use("a100"))), "read");
    EXPECT_NE(errorOf(withLibrary(reversed(33), "")).find("expected at most 32 media inside one another"),
              std::string::npos);
}

TEST(ProjectLibrary, CopiesOfCopiesRunIntoTheBudget) {
    EXPECT_NE(errorOf(withLibrary(tower(30, 10), "")).find("expected no more than 100000 media"),
              std::string::npos);
}

} // namespace
