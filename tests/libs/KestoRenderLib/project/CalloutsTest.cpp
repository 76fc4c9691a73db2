#include "KestoMediaLib/CalloutMedia.h"
#include "libs/KestoRenderLib/project/Composition.h"

#include <gtest/gtest.h>

using namespace KestoMediaLib;
using namespace RenderTests;

namespace {

boost::shared_ptr<CalloutMedia> callout(int width, int height) {
    const auto drawing =
        boost::make_shared<VectorDrawing>("remix", "rectangle", "basic", VectorDrawing::Params());
    auto media = boost::make_shared<CalloutMedia>(drawing);
    media->setExtent({width * 1.0, height * 1.0});
    return lasting(media);
}

} // namespace

TEST(ShownCallout, FillsItsAreaOverWhatLiesBelow) {
    Composition composition(6, 4);
    EXPECT_EQ(lettersOf(composition.add(colored(white, 6, 4)).add(at(1, 0, callout(4, 2))).render()),
              "WWWWWW\n"
              "WWRRRR\n"
              "WWRRRR\n"
              "WWWWWW\n");
}

TEST(ShownCallout, IsDrawnAtItsOwnTime) {
    Composition composition(4, 2);
    composition.add(lasting(callout(4, 2), 20, 10));
    EXPECT_EQ(valueAt(composition.render(24), 1, 1), red);
    EXPECT_EQ(valueAt(composition.render(25), 1, 1), green);
}

TEST(ShownCallout, ASizeThatTheDrawerCorrectedFillsTheSameArea) {
    Composition composition(5, 2);
    EXPECT_EQ(lettersOf(composition.add(callout(5, 2)).render()), "RRRRR\nRRRRR\n");
}

TEST(ShownCallout, OneThatDrawsNothingIsAHole) {
    const auto empty = boost::make_shared<CalloutMedia>(nullptr);
    empty->setExtent({4, 2});
    Composition composition(4, 2);
    EXPECT_EQ(valueAt(composition.add(colored(red, 4, 2)).add(lasting(empty)).render(), 1, 1), red);
}
