#include "batch/MemoryNeed.h"

#include "GdiplusSession.h"
#include "support/PngFile.h"
#include "support/TempFolder.h"

#include <gtest/gtest.h>

using KestoHost::memoryNeedOf;

namespace {

class MemoryNeed : public testing::Test {
protected:
    KestoHost::GdiplusSession gdiplus;
    TestSupport::TempFolder folder;
};

} // namespace

TEST_F(MemoryNeed, OfAPictureIsAllItsPixels) {
    const TestSupport::PngFile picture = {.width = 30, .height = 20, .pixelAt = [](int, int) { return 0U; }};
    folder.write("a.png", picture.bytes());
    EXPECT_EQ(memoryNeedOf(folder / "a.png"), 30 * 20 * 4);
}

TEST_F(MemoryNeed, OfWhatIsNoPictureIsAFixedFigure) {
    folder.write("a.txt", std::string_view("text"));
    folder.write("b.mp4", std::string_view("no video either"));
    EXPECT_GT(memoryNeedOf(folder / "a.txt"), 1 << 20);
    EXPECT_EQ(memoryNeedOf(folder / "a.txt"), memoryNeedOf(folder / "b.mp4"));
}

TEST_F(MemoryNeed, OfAMissingFileIsNothing) {
    EXPECT_EQ(memoryNeedOf(folder / "none.png"), 0);
    EXPECT_EQ(memoryNeedOf("\xFF.png"), 0);
}
