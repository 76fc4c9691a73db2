#pragma once

#include <boost/rational.hpp>

#include <cstdint>
#include <optional>
#include <string>

namespace EngineBackend {

using Rational = boost::rational<std::int64_t>;

enum class StreamKind { Video, Audio, Subtitle, Other };

/// In pixels.
struct PictureSize {
    int width = 0;
    int height = 0;

    friend bool operator==(const PictureSize&, const PictureSize&) = default;
};

/// How a decoded picture becomes upright: left and right are exchanged first, then it is turned.
struct Orientation {
    int quarterTurnsClockwise = 0; ///< 0 to 3
    bool isMirrored = false;

    bool swapsAxes() const { return quarterTurnsClockwise % 2 != 0; }
    friend bool operator==(const Orientation&, const Orientation&) = default;
};

struct VideoFacts {
    PictureSize codedSize;   ///< of a picture as it is decoded, cropped to what is meant to be seen
    PictureSize displaySize; ///< upright and of square pixels
    Rational pixelAspect{1}; ///< width of a decoded pixel to its height
    Orientation orientation;
    Rational averageFrameRate{0}; ///< per second; 0 when it is not known
    Rational realFrameRate{0};    ///< the rate that all time stamps fit; 0 when it is not known
    bool isAttachedPicture = false;
};

struct AudioFacts {
    int sampleRate = 0;
    int channels = 0;
};

/// What a file tells about one of its streams. Times are seconds from the presentation's start.
struct StreamFacts {
    int index = 0;
    int id = 0; ///< the container's own number, such as a track ID
    StreamKind kind = StreamKind::Other;
    std::string codec;          ///< its short name, such as "h264"; empty when it is not known
    std::uint32_t codecTag = 0; ///< the container's four characters, the first in the lowest byte
    std::string language;       ///< as the container writes it; empty when it is not known
    std::string handlerName;    ///< of a track of the MP4 family; empty when it has none
    bool isDefault = false;
    Rational timeBase{0}; ///< seconds of one tick of its time stamps
    Rational startTime{0};
    std::optional<Rational> duration;
    std::int64_t frameCount = 0; ///< of pictures or packets; 0 when it is not known
    std::int64_t bitsPerSecond = 0;
    VideoFacts video; ///< for video alone
    AudioFacts audio; ///< for audio alone
};

/// The characters of `codecTag`, which may be any bytes; empty when there are none.
inline std::string codecTagText(const StreamFacts& stream) {
    std::string text;
    for (unsigned shift = 0; stream.codecTag != 0 && shift < 32; shift += 8)
        text += static_cast<char>(stream.codecTag >> shift & 0xFFU);
    return text;
}

} // namespace EngineBackend
