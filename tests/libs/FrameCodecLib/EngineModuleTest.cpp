#include "support/TempFolder.h"
#include "support/video/Videos.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>

namespace {

using TestSupport::TempFolder;

struct ClosePipe {
    void operator()(std::FILE* pipe) const { ::pclose(pipe); }
};

/// What the helper program writes about a file.
std::string loadedModules(const std::string& file, const std::string& environment = "") {
    const std::string command = environment + " '" KESTO_LOADED_MODULES "' '" + file + "'";
    const std::unique_ptr<std::FILE, ClosePipe> pipe(::popen(command.c_str(), "r"));
    std::array<char, 256> line{};
    return pipe && std::fgets(line.data(), static_cast<int>(line.size()), pipe.get()) ? line.data() : "";
}

TEST(EngineModule, IsLoadedByTheFirstVideoAndNotBefore) {
    EXPECT_EQ(loadedModules(videoPath("h264.mp4")), "00 11 opened\n");
}

TEST(EngineModule, IsNotLoadedForAFileThatCannotBeRead) {
    EXPECT_EQ(loadedModules(videoPath("missing.mp4")), "00 00 null\n");
}

TEST(EngineModule, GivesNoDecoderWhereItIsMissing) {
    const TempFolder folder;
    const std::filesystem::path library = KESTO_FRAME_CODEC_LIB;
    const std::filesystem::path program = KESTO_LOADED_MODULES;
    std::filesystem::copy_file(library, folder / library.filename().string());
    std::filesystem::copy_file(program, folder / program.filename().string());
    const std::string searched = (folder / "").string() + ":" + library.parent_path().string();
    const std::string command = "LD_LIBRARY_PATH='" + searched + "' '" +
                                (folder / program.filename().string()).string() + "' '" +
                                videoPath("h264.mp4") + "'";
    const std::unique_ptr<std::FILE, ClosePipe> pipe(::popen(command.c_str(), "r"));
    std::array<char, 256> line{};
    ASSERT_TRUE(pipe && std::fgets(line.data(), static_cast<int>(line.size()), pipe.get()));
    EXPECT_STREQ(line.data(), "00 00 null\n");
}

} // namespace
