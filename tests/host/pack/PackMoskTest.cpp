#include "host/ProgramRun.h"
#include "libs/MOSK/OpenRecording.h"
#include "support/TempFolder.h"
#include "support/video/Videos.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Optional;

namespace {

class PackMosk : public testing::Test {
protected:
    const TestSupport::TempFolder folder;
    const std::string output = (folder / "talk.MOSK").string();
};

TEST_F(PackMosk, MakesARecordingOfAllThatWasGiven) {
    const std::string events = folder.write("events.dat", "events").string();
    const ProgramRun run =
        runProgram({"pack", "--screen", videoPath("h264.mp4"), "--camera", videoPath("camera.mp4"), "--audio",
                    videoPath("tone.m4a"), "--system-audio", videoPath("with-audio.mp4"), "--events", events,
                    "-o", output});
    EXPECT_EQ(run.exitStatus, 0) << run.errors;
    EXPECT_THAT(run.errors, IsEmpty());
    EXPECT_THAT(run.output, IsEmpty());
    const MOSK::Tracks tracks = MOSK::tracksOf(output);
    ASSERT_EQ(tracks.size(), 5U);
    for (std::size_t i = 0; i < 4; ++i)
        EXPECT_EQ(tracks[i]->typeCode(), 100 + static_cast<int>(i));
    EXPECT_EQ(tracks[4]->format(), "qrl2");
    EXPECT_THAT(MOSK::numberAt(*tracks[0], 1), Optional(25));
    EXPECT_THAT(MOSK::numberAt(*tracks[1], 1), Optional(125));
}

TEST_F(PackMosk, WarnsOfTheQuickTimeForm) {
    const ProgramRun run = runProgram(
        {"pack", "--screen", videoPath("mjpeg.avi"), "--audio", videoPath("tone.wav"), "-o", output});
    EXPECT_EQ(run.exitStatus, 0);
    EXPECT_THAT(run.errors, HasSubstr("warning: \"" + output + "\" has the QuickTime form"));
    const MOSK::Tracks tracks = MOSK::tracksOf(output);
    ASSERT_EQ(tracks.size(), 2U);
    EXPECT_THAT(MOSK::numberAt(*tracks[0], 1), Optional(25));
}

TEST_F(PackMosk, TellsItsPartsAsJson) {
    const std::string events = folder.write("events.dat", "events").string();
    const ProgramRun run =
        runProgram({"pack", "--screen", videoPath("h264.mp4"), "--events", events, "-o", output, "--json"});
    nlohmann::json report = nlohmann::json::parse(run.output);
    EXPECT_GT(report.at("milliseconds").get<double>(), 0);
    report.erase("milliseconds");
    EXPECT_EQ(
        report,
        (nlohmann::json{
            {"output", output},
            {"container", "mosk"},
            {"warning", nullptr},
            {"parts",
             {{{"role", "screen"}, {"input", videoPath("h264.mp4")}, {"member", nullptr}, {"copied", false}},
              {{"role", "events"}, {"input", events}, {"member", nullptr}, {"copied", true}}}}}));
}

} // namespace
