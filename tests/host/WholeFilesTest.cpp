#include "WholeFiles.h"

#include "support/TempFolder.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

using namespace KestoHost;

TEST(WholeFiles, TakeTheirNamesTogetherAndReplaceWhatWasThere) {
    const TestSupport::TempFolder folder;
    const std::string older = folder.write("older.txt", "older").string();
    const std::string other = (folder / "other.txt").string();
    WholeFiles files;
    EXPECT_TRUE(files.write(older, "new"));
    EXPECT_TRUE(files.write(other, "another"));
    EXPECT_EQ(TestSupport::readFile(older), "older");
    EXPECT_EQ(files.commit(), "");
    EXPECT_EQ(TestSupport::readFile(older), "new");
    EXPECT_EQ(TestSupport::readFile(other), "another");
}

TEST(WholeFiles, NeverReplaceAPipeOrADevice) {
    const TestSupport::TempFolder folder;
    const std::string older = folder.write("older.txt", "older").string();
    const std::string pipe = (folder / "pipe").string();
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    {
        WholeFiles files;
        EXPECT_TRUE(files.write(older, "new"));
        EXPECT_TRUE(files.write(pipe, "new"));
        EXPECT_EQ(files.commit(), pipe);
    }
    EXPECT_TRUE(std::filesystem::is_fifo(pipe));
    EXPECT_EQ(TestSupport::readFile(older), "older");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder / ""), {}), 2);
}
