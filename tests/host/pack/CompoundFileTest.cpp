#include "pack/CompoundFile.h"

#include "support/TempFolder.h"

#include <gtest/gtest.h>

using namespace KestoHost;

namespace {

/// Of the format; 3 has sectors of 512 bytes, and 4 of 4096 ([MS-CFB] 2.2).
int versionOfAFileFor(std::uint64_t bytes) {
    const TestSupport::TempFolder folder;
    const std::string path = (folder / "talk.plumex").string();
    CompoundFile file(path, bytes);
    EXPECT_TRUE(file.addText("manifest.plumxml", "<recording/>"));
    EXPECT_TRUE(file.commit());
    EXPECT_FALSE(file.failure());
    constexpr std::size_t placeOfVersion = 26;
    return TestSupport::readFile(path).at(placeOfVersion);
}

} // namespace

TEST(CompoundFile, TakesSmallSectorsWhileAllOfItHasLessThanTwoGigabytes) {
    EXPECT_EQ(versionOfAFileFor(0), 3);
    EXPECT_EQ(versionOfAFileFor(1'999'999'999), 3);
    EXPECT_EQ(versionOfAFileFor(2'000'000'000), 4);
    EXPECT_EQ(versionOfAFileFor(std::uint64_t{1} << 40U), 4);
}

TEST(CompoundFile, TellsThatAnInputCannotBeReadAndTakesNothingMore) {
    const TestSupport::TempFolder folder;
    CompoundFile file((folder / "talk.plumex").string(), 0);
    InputFile missing((folder / "missing").string());
    EXPECT_FALSE(file.addFile("Events.dat", missing));
    ASSERT_TRUE(file.failure());
    EXPECT_EQ(file.failure()->reason, "unreadable");
    EXPECT_FALSE(file.addText("manifest.plumxml", "<recording/>"));
    EXPECT_FALSE(file.commit());
    EXPECT_FALSE(std::filesystem::exists(folder / "talk.plumex"));
}
