#pragma once

#include "platform/Export.h"
#include "platform/WinTypes.h"

#include <boost/rational.hpp>

#include <optional>
#include <string>
#include <vector>

namespace FrameCodecLib {

enum class StreamContent { Video, Audio, Other };

/// A stream as its file tells.
struct ListedStream {
    StreamContent content = StreamContent::Other;
    /// In a file of the MP4 family the four characters of its samples' format, which may be any bytes; in
    /// others the codec's short name, such as "h264". Empty when it is not known.
    std::string format;
    int width = 0; ///< at which it is shown, in pixels; 0 for what is no picture, or when it is not known
    int height = 0;
    std::optional<boost::rational<__int64>> duration; ///< in seconds
};

struct StreamListing {
    std::string container; ///< its short name, such as "mp4" or "matroska"; empty without streams
    std::vector<ListedStream> streams;
};

/// The streams of a media file in its order, without the covers behind them. None of a file that is no
/// container or can't be read, and then `DiagnoseDecoder` tells why. It loads all that decoding needs, and
/// reads into a file whose header does not tell everything. Any thread; it ends in bounded time.
KESTO_EXPORT StreamListing ListStreams(const std::string& fileName);

} // namespace FrameCodecLib
