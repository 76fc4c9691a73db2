#include "backends/gdiplus/codecs/CollectRows.h"

#include <gtest/gtest.h>

#include <string_view>

namespace GdiplusBackend {

namespace {

Bytes bytesOf(std::string_view text) {
    const auto bytes = std::as_bytes(std::span(text));
    return Bytes(bytes.begin(), bytes.end());
}

} // namespace

TEST(CodecTable, AnEmptyFileIsOfNoKnownKind) {
    EXPECT_EQ(statusOf({}), Gdiplus::UnknownImageFormat);
}

TEST(CodecTable, TextIsOfNoKnownKind) {
    EXPECT_EQ(statusOf(bytesOf("These are the minutes of the meeting.\n")), Gdiplus::UnknownImageFormat);
}

TEST(CodecTable, ZeroBytesAreOfNoKnownKind) {
    EXPECT_EQ(statusOf(Bytes(4096)), Gdiplus::UnknownImageFormat);
}

} // namespace GdiplusBackend
