#include "platform/StructuredStorage.h"

#include "host/ProgramRun.h"
#include "libs/MOSK/OpenRecording.h"
#include "support/TempFolder.h"
#include "support/video/Videos.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <map>

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Optional;
using testing::Pair;

namespace {

std::string contentOf(IStream& stream) {
    std::string content;
    std::string part(65536, '\0');
    ULONG got = 0;
    while (stream.Read(part.data(), static_cast<ULONG>(part.size()), &got) == S_OK && got > 0)
        content += part.substr(0, got);
    return content;
}

/// The streams of a compound file by their names; empty for any other file.
std::map<std::string, std::string> membersOf(const std::filesystem::path& file) {
    std::map<std::string, std::string> members;
    void* opened = nullptr;
    if (StgOpenStorageEx(TestSupport::wideOf(file).c_str(), STGM_READ | STGM_SHARE_EXCLUSIVE, STGFMT_ANY, 0,
                         nullptr, nullptr, IID_IStorage, &opened) != S_OK)
        return members;
    auto* root = static_cast<IStorage*>(opened);
    for (const char* name : {"Screen_Stream.avi", "Camera_Stream.wmv", "Audio.wav", "SysAudio.wav",
                             "Events.dat", "manifest.plumxml"}) {
        IStream* stream = nullptr;
        const std::string text = name;
        if (root->OpenStream(std::wstring(text.begin(), text.end()).c_str(), nullptr, STGM_SHARE_EXCLUSIVE, 0,
                             &stream) != S_OK)
            continue;
        members[name] = contentOf(*stream);
        stream->Release();
    }
    root->Release();
    return members;
}

class PackPlumex : public testing::Test {
protected:
    std::vector<std::string> names() const {
        std::vector<std::string> found;
        for (const auto& entry : std::filesystem::directory_iterator(folder / ""))
            found.push_back(entry.path().filename().string());
        return found;
    }

    const TestSupport::TempFolder folder;
    const std::string output = (folder / "talk.plumex").string();
};

TEST_F(PackPlumex, TakesFilesOfTheRightContainersByteForByte) {
    const std::string events = folder.write("e", "cursor 1 2").string();
    const ProgramRun run = runProgram(
        {"pack", "--screen", videoPath("mjpeg.avi"), "--camera", videoPath("camera.wmv"), "--audio",
         videoPath("tone.wav"), "--system-audio", videoPath("tone.wav"), "--events", events, "-o", output});
    EXPECT_EQ(run.exitStatus, 0) << run.errors;
    const auto members = membersOf(output);
    ASSERT_EQ(members.size(), 6U);
    EXPECT_EQ(members.at("Screen_Stream.avi"), TestSupport::readFile(videoPath("mjpeg.avi")));
    EXPECT_EQ(members.at("Camera_Stream.wmv"), TestSupport::readFile(videoPath("camera.wmv")));
    EXPECT_EQ(members.at("Audio.wav"), TestSupport::readFile(videoPath("tone.wav")));
    EXPECT_EQ(members.at("SysAudio.wav"), TestSupport::readFile(videoPath("tone.wav")));
    EXPECT_EQ(members.at("Events.dat"), "cursor 1 2");
}

TEST_F(PackPlumex, ListsItsStreamsInAManifest) {
    const std::string events = folder.write("e", "cursor 1 2").string();
    runProgram({"pack", "--screen", videoPath("mjpeg.avi"), "--events", events, "-o", output});
    const auto members = membersOf(output);
    const auto size = std::filesystem::file_size(videoPath("mjpeg.avi"));
    EXPECT_EQ(members.at("manifest.plumxml"),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<recording version=\"1\">\n"
              "  <stream role=\"screen\" name=\"Screen_Stream.avi\" bytes=\"" +
                  std::to_string(size) +
                  "\"/>\n"
                  "  <stream role=\"events\" name=\"Events.dat\" bytes=\"10\"/>\n"
                  "</recording>\n");
}

TEST_F(PackPlumex, IsRefusedWhereAVideoIsShown) {
    runProgram({"pack", "--screen", videoPath("mjpeg.avi"), "-o", output});
    const std::string picture = (folder / "out.png").string();
    const std::vector<std::vector<std::string>> commands = {
        {"thumb"}, {"thumb", "--zoom", "0,0,8,8", "--zoom-size", "8x8"}, {"sheet", "--count", "2"}};
    for (std::vector<std::string> arguments : commands) {
        arguments.insert(arguments.end(), {output, "-o", picture, "--json"});
        const ProgramRun run = runProgram(arguments);
        EXPECT_EQ(run.exitStatus, 1);
        EXPECT_THAT(run.errors, HasSubstr("\"" + output + "\" is a compound file"));
        EXPECT_EQ(nlohmann::json::parse(run.output).value("reason", ""), "unsupported");
    }
}

TEST_F(PackPlumex, PutsOtherFilesIntoTheContainersOfTheMembers) {
    const ProgramRun run =
        runProgram({"pack", "--screen", videoPath("h264.mp4"), "--camera", videoPath("camera-in-order.mp4"),
                    "--audio", videoPath("tone.mka"), "-o", output});
    EXPECT_EQ(run.exitStatus, 0) << run.errors;
    const auto members = membersOf(output);
    ASSERT_EQ(members.size(), 4U);
    EXPECT_THAT(MOSK::videoNumberAt(folder.write("s.avi", members.at("Screen_Stream.avi")), 1), Optional(25));
    EXPECT_THAT(MOSK::videoNumberAt(folder.write("c.wmv", members.at("Camera_Stream.wmv")), 1),
                Optional(125));
    EXPECT_EQ(members.at("Audio.wav").substr(0, 4), "RIFF");
}

TEST_F(PackPlumex, FindsItsInputsInAnyLetterCaseAndWithEitherSlash) {
    folder.write("Events.DAT", "cursor 1 2");
    std::string events = (folder / "eVENTS.dat").string();
    std::replace(events.begin() + 1, events.end(), '/', '\\');
    const ProgramRun run =
        runProgram({"pack", "--screen", videoPath("mjpeg.avi"), "--events", events, "-o", output});
    EXPECT_EQ(run.exitStatus, 0) << run.errors;
    EXPECT_EQ(membersOf(output)["Events.dat"], "cursor 1 2");
}

TEST_F(PackPlumex, LeavesNothingBesideTheRecording) {
    runProgram({"pack", "--screen", videoPath("h264.mp4"), "-o", output});
    EXPECT_THAT(names(), ElementsAre("talk.plumex"));
}

TEST_F(PackPlumex, LeavesNothingWhereItFails) {
    const ProgramRun run = runProgram(
        {"pack", "--screen", videoPath("h264.mp4"), "--camera", videoPath("camera.mp4"), "-o", output});
    EXPECT_EQ(run.exitStatus, 1);
    EXPECT_THAT(names(), IsEmpty());
}

TEST_F(PackPlumex, TellsWhatWasCopied) {
    const ProgramRun run = runProgram({"pack", "--screen", videoPath("h264.mp4"), "--audio",
                                       videoPath("tone.wav"), "-o", output, "--json"});
    const nlohmann::json report = nlohmann::json::parse(run.output);
    EXPECT_EQ(report.at("container"), "plumex");
    ASSERT_EQ(report.at("parts").size(), 2U);
    EXPECT_EQ(report.at("parts")[0].at("member"), "Screen_Stream.avi");
    EXPECT_EQ(report.at("parts")[0].at("copied"), false);
    EXPECT_EQ(report.at("parts")[1].at("role"), "microphone");
    EXPECT_EQ(report.at("parts")[1].at("copied"), true);
}

} // namespace
