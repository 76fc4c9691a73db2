#include "gdiplus/encoders/SinkWriter.h"

#include "backends/gdiplus/encoders/TestPicture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>

namespace GdiplusBackend {

namespace {

std::vector<std::byte> countingBytes(std::size_t count) {
    std::vector<std::byte> bytes;
    for (std::size_t i = 0; i < count; ++i)
        bytes.push_back(static_cast<std::byte>(i * 7 % 251));
    return bytes;
}

class CountingSink : public MemorySink {
public:
    Result<void> write(std::span<const std::byte> part) override {
        ++calls;
        return MemorySink::write(part);
    }

    int calls = 0;
};

class RefusingSink : public ByteSink {
public:
    Result<void> write(std::span<const std::byte>) override {
        ++calls;
        return tl::unexpected(LoadError{Gdiplus::AccessDenied, "refused"});
    }

    int calls = 0;
};

class ThrowingSink : public ByteSink {
public:
    Result<void> write(std::span<const std::byte>) override { throw std::runtime_error("thrown"); }
};

} // namespace

TEST(SinkWriter, SmallPiecesReachTheSinkTogether) {
    CountingSink sink;
    SinkWriter writer(sink);
    const auto bytes = countingBytes(1000);
    for (const std::byte& byte : bytes)
        EXPECT_TRUE(writer.write(std::span(&byte, 1)));
    EXPECT_TRUE(writer.finish().has_value());
    EXPECT_EQ(sink.bytes, bytes);
    EXPECT_EQ(sink.calls, 1);
}

TEST(SinkWriter, PiecesOfAllSizesKeepTheirOrder) {
    MemorySink sink;
    SinkWriter writer(sink);
    const auto bytes = countingBytes(1'000'000);
    std::span<const std::byte> left(bytes);
    for (std::size_t size = 1; !left.empty(); size = size * 3 % 100'003) {
        const auto piece = left.first(std::min(size, left.size()));
        EXPECT_TRUE(writer.write(piece));
        left = left.subspan(piece.size());
    }
    EXPECT_TRUE(writer.finish().has_value());
    EXPECT_EQ(sink.bytes, bytes);
}

TEST(SinkWriter, SinkIsLeftAloneAfterItsFirstFailure) {
    RefusingSink sink;
    SinkWriter writer(sink);
    const auto bytes = countingBytes(100'000);
    EXPECT_FALSE(writer.write(bytes));
    EXPECT_FALSE(writer.write(bytes));
    EXPECT_FALSE(writer.write(std::span(bytes).first(1)));
    EXPECT_FALSE(writer.finish().has_value());
    EXPECT_EQ(sink.calls, 1);
}

TEST(SinkWriter, SinksErrorComesBeforeTheEncodersOwn) {
    RefusingSink sink;
    SinkWriter writer(sink);
    writer.write(countingBytes(100'000));
    EXPECT_EQ(writer.failureOr("encoder").value().message, "refused");
    EXPECT_EQ(writer.failureOr("encoder").value().status, Gdiplus::AccessDenied);
}

TEST(SinkWriter, EncodersOwnErrorIsGeneric) {
    MemorySink sink;
    SinkWriter writer(sink);
    EXPECT_EQ(writer.failureOr("encoder").value().message, "encoder");
    EXPECT_EQ(writer.failureOr("encoder").value().status, Gdiplus::GenericError);
}

TEST(SinkWriter, WhatTheSinkThrowsComesOutAtTheEnd) {
    ThrowingSink sink;
    SinkWriter writer(sink);
    EXPECT_FALSE(writer.write(countingBytes(100'000)));
    EXPECT_THROW((void)writer.finish(), std::runtime_error);
}

} // namespace GdiplusBackend
