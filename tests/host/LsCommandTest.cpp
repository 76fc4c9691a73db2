#include "ProgramRun.h"

#include "support/TempFolder.h"
#include "support/video/Videos.h"

#include "platform/StructuredStorage.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <memory>

using nlohmann::json;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

struct Release {
    void operator()(IUnknown* object) const { object->Release(); }
};

constexpr DWORD forWriting = STGM_WRITE | STGM_CREATE | STGM_SHARE_EXCLUSIVE;

/// A recording whose members hold as many bytes as are asked for.
std::string plumex(const TestSupport::TempFolder& folder,
                   const std::vector<std::pair<std::wstring, std::size_t>>& members) {
    const auto path = folder / "talk.plumex";
    void* object = nullptr;
    EXPECT_EQ(StgCreateStorageEx(TestSupport::wideOf(path).c_str(), forWriting, STGFMT_DOCFILE, 0, nullptr,
                                 nullptr, IID_IStorage, &object),
              S_OK);
    const std::unique_ptr<IStorage, Release> storage(static_cast<IStorage*>(object));
    for (const auto& [name, size] : members) {
        IStream* stream = nullptr;
        EXPECT_EQ(storage->CreateStream(name.c_str(), forWriting, 0, 0, &stream), S_OK);
        const std::unique_ptr<IStream, Release> owner(stream);
        EXPECT_EQ(stream->SetSize({size}), S_OK);
    }
    IStorage* inner = nullptr;
    EXPECT_EQ(storage->CreateStorage(L"Notes", forWriting, 0, 0, &inner), S_OK);
    inner->Release();
    EXPECT_EQ(storage->Commit(STGC_DEFAULT), S_OK);
    return path.string();
}

std::string reasonFor(const std::string& path, const std::string& wordInMessage = "") {
    const ProgramRun run = runProgram({"ls", path, "--json"});
    EXPECT_EQ(run.exitStatus, 1);
    EXPECT_THAT(run.errors, HasSubstr(path));
    EXPECT_THAT(run.errors, HasSubstr(wordInMessage));
    return json::parse(run.output).at("reason");
}

} // namespace

TEST(LsCommand, ListsMembersInAlignedColumnsWithWholeNames) {
    const TestSupport::TempFolder folder;
    const std::string path = plumex(folder, {{L"Screen_Stream.avi", 123'456},
                                             {L"Audio.wav", 7},
                                             {L"Events.dat", 0},
                                             {L"A name of thirty-one characters", 10}});
    const ProgramRun run = runProgram({"ls", path});
    EXPECT_EQ(run.exitStatus, 0);
    EXPECT_THAT(run.errors, IsEmpty());
    EXPECT_EQ(run.output, "NAME                             KIND    ROLE        FORMAT    SIZE\n"
                          "Notes                            folder  -           -            -\n"
                          "Audio.wav                        audio   microphone  wav          7\n"
                          "Events.dat                       data    events      dat          0\n"
                          "Screen_Stream.avi                video   screen      avi     123456\n"
                          "A name of thirty-one characters  data    -           -           10\n");
}

TEST(LsCommand, ListsMembersForMachines) {
    const TestSupport::TempFolder folder;
    const std::string path = plumex(folder, {{L"Camera_Stream.wmv", 5000}, {L"Svideo0.mp4", 1}});
    const ProgramRun run = runProgram({"ls", path, "--json"});
    EXPECT_EQ(run.exitStatus, 0);
    EXPECT_EQ(json::parse(run.output), (json{{"input", path},
                                             {"container", "plumex"},
                                             {"members",
                                              {{{"name", "Notes"},
                                                {"kind", "folder"},
                                                {"role", nullptr},
                                                {"format", nullptr},
                                                {"size", nullptr}},
                                               {{"name", "Svideo0.mp4"},
                                                {"kind", "video"},
                                                {"role", "screen"},
                                                {"format", "mp4"},
                                                {"size", 1}},
                                               {{"name", "Camera_Stream.wmv"},
                                                {"kind", "video"},
                                                {"role", "camera"},
                                                {"format", "wmv"},
                                                {"size", 5000}}}}}));
}

TEST(LsCommand, ListsTracksOfARecordingWithTheirRoles) {
    const ProgramRun run = runProgram({"ls", videoPath("recording.mosk"), "--json"});
    EXPECT_EQ(run.exitStatus, 0);
    const json report = json::parse(run.output);
    EXPECT_EQ(report.at("container"), "mosk");
    std::vector<std::string> roles;
    for (const json& track : report.at("tracks"))
        roles.push_back(track.at("role"));
    EXPECT_EQ(roles, (std::vector<std::string>{"screen", "camera", "microphone", "system"}));
}

TEST(LsCommand, ListsTracksOfAMovie) {
    const json report = json::parse(runProgram({"ls", videoPath("with-audio.mp4"), "--json"}).output);
    EXPECT_EQ(report.at("container"), "mp4");
    ASSERT_EQ(report.at("tracks").size(), 2U);
    const json& video = report.at("tracks").at(0);
    EXPECT_EQ(video.at("index"), 0);
    EXPECT_EQ(video.at("kind"), "video");
    EXPECT_EQ(video.at("format"), "avc1");
    EXPECT_TRUE(video.at("role").is_null());
    EXPECT_GT(video.at("width"), 0);
    EXPECT_NEAR(video.at("duration").get<double>(), 3.6, 0.05);
    const json& audio = report.at("tracks").at(1);
    EXPECT_EQ(audio.at("kind"), "audio");
    EXPECT_TRUE(audio.at("width").is_null());
}

TEST(LsCommand, ShowsTracksAsATable) {
    const ProgramRun run = runProgram({"ls", videoPath("recording.mosk")});
    EXPECT_THAT(run.output, HasSubstr("TRACK  KIND   ROLE        FORMAT  PICTURE"));
    EXPECT_THAT(run.output, HasSubstr("\n    2  audio  microphone  mp4a    -"));
}

TEST(LsCommand, KeepsControlCharactersOfNamesFromTheTerminal) {
    const TestSupport::TempFolder folder;
    const ProgramRun run = runProgram({"ls", plumex(folder, {{L"a\033[2Jb", 1}})});
    EXPECT_EQ(run.output.find('\033'), std::string::npos);
    EXPECT_THAT(run.output, HasSubstr("a\xEF\xBF\xBD[2Jb"));
}

TEST(LsCommand, KeepsControlCharactersThatAreNotAsciiFromTheTerminal) {
    const TestSupport::TempFolder folder;
    const ProgramRun run = runProgram({"ls", plumex(folder, {{L"a\u009B2Jb", 1}, {L"\u00A0\u00E9", 1}})});
    EXPECT_THAT(run.output, HasSubstr("a\xEF\xBF\xBD"
                                      "2Jb"));
    EXPECT_THAT(run.output, HasSubstr("\n\xC2\xA0\xC3\xA9 "));
}

TEST(LsCommand, SaysWhichFileFailedAndWhatWasExpected) {
    const TestSupport::TempFolder folder;
    EXPECT_EQ(reasonFor(folder / "missing.plumex", "no such file"), "missing");
    EXPECT_EQ(reasonFor(folder.write("text.plumex", "this is no container").string(), ".plumex"),
              "no-container");
    EXPECT_EQ(reasonFor(folder.write("text.mosk", "").string(), "expected"), "no-container");
    std::filesystem::create_directories(folder / "folder.plumex");
    EXPECT_EQ(reasonFor(folder / "folder.plumex"), "unreadable");
    const std::string whole = TestSupport::readFile(plumex(folder, {{L"Audio.wav", 10'000}}));
    EXPECT_EQ(reasonFor(folder.write("cut.plumex", whole.substr(0, 3000)).string(), "damaged"), "damaged");
}

TEST(LsCommand, IsRefusedWithoutAFile) {
    EXPECT_EQ(runProgram({"ls"}).exitStatus, 2);
    EXPECT_EQ(runProgram({"ls", "a", "b"}).exitStatus, 2);
}
