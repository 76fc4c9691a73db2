#include "svg/SvgExchange.h"

#include <gtest/gtest.h>

#include <string>

using namespace SvgBackend;

namespace {

SvgExchange exchange() {
    return SvgExchange::create({}, {.text = "<svg/>", .stylesheet = "g {}"}).value();
}

} // namespace

TEST(SvgExchange, HoldsTheDocumentAndItsStylesheet) {
    const SvgExchange shared = exchange();
    EXPECT_EQ(shared.document().text, "<svg/>");
    EXPECT_EQ(shared.document().stylesheet, "g {}");
}

TEST(SvgExchange, WhatOneProgramCreatesAnotherOpens) {
    const SvgExchange created = exchange();
    auto opened = SvgExchange::open(created.descriptor());
    ASSERT_TRUE(opened);
    EXPECT_EQ(opened->document().text, "<svg/>");
    opened->setMessage("broken");
    EXPECT_EQ(created.message(), "broken");
}

TEST(SvgExchange, ALongMessageEndsAfterAWholeCharacter) {
    SvgExchange shared = exchange();
    shared.setMessage(std::string(1022, 'a') + "\u00FC");
    EXPECT_EQ(shared.message(), std::string(1022, 'a'));
    shared.setMessage(std::string(1021, 'a') + "\u00FC");
    EXPECT_EQ(shared.message(), std::string(1021, 'a') + "\u00FC");
}
