#pragma once

#include "platform/FrameCodecLib.h"

#include "support/FrameNumber.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>

/// What tests ask a decoder.
namespace FrameCodecLib {

using Time = boost::rational<__int64>;

inline std::unique_ptr<Decoder> openDecoder(const std::string& path, int stream = -1) {
    const std::unique_ptr<DecoderFactory> factory(DecoderFactory::Create());
    return std::unique_ptr<Decoder>(factory->CreateDecoder(path, stream, 1));
}

inline std::unique_ptr<Bitmap> frameAt(Decoder& decoder, Time time) {
    FrameTiming timing;
    return std::unique_ptr<Bitmap>(decoder.GetFrameAtTime(time, timing, 0));
}

inline std::optional<int> numberOf(Bitmap& frame) {
    EXPECT_TRUE(frame.Lock());
    const auto number =
        FrameNumber::read(frame.GetPixels(), frame.GetWidth(), frame.GetHeight(), frame.GetStride());
    frame.Unlock();
    return number;
}

/// The number that the frame at `time` carries; nothing without a frame or a number that can be read.
inline std::optional<int> numberAt(Decoder& decoder, Time time) {
    const auto frame = frameAt(decoder, time);
    return frame ? numberOf(*frame) : std::nullopt;
}

} // namespace FrameCodecLib
