#include "walls/WallChecker.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>

namespace Walls {

namespace {

SourceTree projectTree() {
    std::ifstream walls(KESTO_WALLS_FILE);
    return {.files = readSources(KESTO_SOURCE_ROOT), .walls = readWalls(walls)};
}

} // namespace

TEST(Walls, TheProjectIsReadWhole) {
    const SourceTree tree = projectTree();
    EXPECT_THAT(tree.files, ::testing::Contains(::testing::Key("src/platform/Gdiplus.h")));
    EXPECT_THAT(tree.files, ::testing::Contains(::testing::Key("backends/gdiplus/LoadError.h")));
    EXPECT_THAT(tree.walls,
                ::testing::Contains(::testing::Pair("src/production", ::testing::Contains("imagefile"))));
}

TEST(Walls, AreBreachedByNoInclude) {
    EXPECT_THAT(findBreaches(projectTree(), exceptions()), ::testing::IsEmpty());
}

TEST(Walls, EveryExceptionHasAReason) {
    for (const Exception& exception : exceptions())
        EXPECT_FALSE(exception.reason.empty()) << exception.file;
}

} // namespace Walls
