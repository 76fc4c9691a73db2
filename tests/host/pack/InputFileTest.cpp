#include "pack/InputFile.h"

#include "support/TempFolder.h"

#include <gtest/gtest.h>

#include <array>
#include <string_view>

using namespace KestoHost;

TEST(InputFile, IsReadToItsEndThoughItsNameIsRemoved) {
    const TestSupport::TempFolder folder;
    const std::string path = folder.write("input", "0123456789").string();
    InputFile file(path);
    std::filesystem::remove(path);
    EXPECT_EQ(file.size(), 10U);
    std::array<char, 8> bytes{};
    EXPECT_EQ(file.read(bytes), 8U);
    EXPECT_EQ(std::string_view(bytes.data(), 8), "01234567");
    EXPECT_EQ(file.read(bytes), 2U);
    EXPECT_EQ(std::string_view(bytes.data(), 2), "89");
    EXPECT_EQ(file.read(bytes), 0U);
    EXPECT_FALSE(file.failure());
}

TEST(InputFile, TellsWhyItCannotBeRead) {
    const TestSupport::TempFolder folder;
    InputFile missing((folder / "missing").string());
    ASSERT_TRUE(missing.failure());
    EXPECT_EQ(missing.failure()->reason, "unreadable");
    EXPECT_EQ(missing.failure()->message,
              "\"" + (folder / "missing").string() + "\" can't be read: there is no such file.");
    std::array<char, 8> bytes{};
    EXPECT_EQ(missing.size(), 0U);
    EXPECT_EQ(missing.read(bytes), 0U);
    const InputFile notRegular((folder / "").string());
    ASSERT_TRUE(notRegular.failure());
    EXPECT_NE(notRegular.failure()->message.find("no regular file"), std::string::npos);
}
