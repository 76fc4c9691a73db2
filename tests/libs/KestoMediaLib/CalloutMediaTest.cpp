#include "KestoMediaLib/CalloutMedia.h"
#include "platform/KestoMediaLibTools.h"

#include <boost/make_shared.hpp>
#include <boost/pointer_cast.hpp>

#include <gtest/gtest.h>

namespace {

using KestoMediaLib::CalloutMedia;
using KestoMediaLib::EdgeModification;
using KestoMediaLib::SafeRational;
using KestoMediaLib::VectorDrawing;
using KestoMediaLib::VectorNode;
using KestoMediaLibTools::hasVectorNodeParam;

boost::shared_ptr<const VectorNode> boldTextArrow() {
    return boost::make_shared<VectorDrawing>("remix", "text-arrow", "bold",
                                             VectorDrawing::Params{{"DrawTime", __int64{5}},
                                                                   {"BorderWidth", 2.5},
                                                                   {"Text", std::string("Hello")},
                                                                   {"Shadow", true}});
}

TEST(CalloutMedia, TellsKindShapeAndStyleOfItsDrawing) {
    const CalloutMedia callout(boldTextArrow());
    const auto node = callout.vectorNode()->value();
    EXPECT_EQ(node->kind(), "remix");
    EXPECT_EQ(node->shapeAttribute()->value(), "text-arrow");
    EXPECT_EQ(node->styleAttribute()->value(), "bold");
}

TEST(CalloutMedia, MayHaveNoDrawing) {
    const CalloutMedia callout(nullptr);
    ASSERT_TRUE(callout.vectorNode());
    EXPECT_FALSE(callout.vectorNode()->value());
}

TEST(CalloutMedia, ItsAttributeTellsOfANewDrawing) {
    CalloutMedia callout(nullptr);
    const auto attribute = callout.vectorNode();
    const auto drawing = boldTextArrow();
    callout.setDrawing(drawing);
    EXPECT_EQ(attribute->value(), drawing);
}

TEST(CalloutMedia, ACopyKeepsItsOwnDrawing) {
    auto callout = boost::make_shared<CalloutMedia>(boldTextArrow());
    const auto copy = boost::dynamic_pointer_cast<CalloutMedia>(callout->clone());
    callout->setDrawing(nullptr);
    EXPECT_TRUE(copy->vectorNode()->value());
}

TEST(CalloutMedia, ScalesAsItIsPlaced) {
    CalloutMedia callout(nullptr);
    KestoMediaLib::Placement placement;
    placement.scale = {2, 0.5};
    callout.setPlacement(placement);
    EXPECT_EQ(callout.scale().at(0).valueAt(0), 2);
    EXPECT_EQ(callout.scale().at(1).valueAt(0), 0.5);
}

TEST(VectorNodeParams, AreTheTypeTheyWereMadeAs) {
    const auto node = boldTextArrow();
    EXPECT_TRUE(hasVectorNodeParam<__int64>(node, "DrawTime"));
    EXPECT_FALSE(hasVectorNodeParam<double>(node, "DrawTime"));
    EXPECT_TRUE(hasVectorNodeParam<double>(node, "BorderWidth"));
    EXPECT_TRUE(hasVectorNodeParam<std::string>(node, "Text"));
    EXPECT_TRUE(hasVectorNodeParam<bool>(node, "Shadow"));
}

TEST(VectorNodeParams, AreFoundByTheirExactName) {
    EXPECT_FALSE(hasVectorNodeParam<__int64>(boldTextArrow(), "drawtime"));
    EXPECT_FALSE(hasVectorNodeParam<__int64>(boldTextArrow(), ""));
}

TEST(VectorNodeParams, AnEmptyNodeHasNone) {
    EXPECT_FALSE(hasVectorNodeParam<__int64>(nullptr, "DrawTime"));
}

TEST(EdgeModifications, AreListedByName) {
    CalloutMedia callout(nullptr);
    callout.addEdgeModification({"Visual", EdgeModification::Edge::End, 1});
    callout.addEdgeModification({"DrawPercentageFade", EdgeModification::Edge::Start, SafeRational(3, 2)});
    callout.addEdgeModification({"Visual", EdgeModification::Edge::Start, 2});
    const auto found = callout.edgeModifications().modifications("Visual");
    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(found[0].edge, EdgeModification::Edge::End);
    EXPECT_EQ(found[1].edge, EdgeModification::Edge::Start);
    EXPECT_TRUE(callout.edgeModifications().modifications("visual").empty());
}

TEST(EdgeModifications, TheTimeIsWhenTheFirstAtTheStartIsDone) {
    CalloutMedia callout(nullptr);
    callout.addEdgeModification({"Visual", EdgeModification::Edge::End, 1});
    EXPECT_EQ(callout.edgeModifications().time("Visual"), SafeRational(0));
    callout.addEdgeModification({"Visual", EdgeModification::Edge::Start, SafeRational(3, 2)});
    callout.addEdgeModification({"Visual", EdgeModification::Edge::Start, 9});
    EXPECT_EQ(callout.edgeModifications().time("Visual"), SafeRational(3, 2));
}

} // namespace
