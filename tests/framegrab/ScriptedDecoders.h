#pragma once

#include "platform/FrameCodecLib.h"
#include "platform/KestoRenderLib.h"

#include <boost/rational.hpp>

#include <string>
#include <vector>

namespace TestSupport {

/// The decoding library's answers as long as this lives; without one, no file can be decoded. One at a time,
/// and on one thread. Set the public members before they are asked for.
class ScriptedDecoders {
public:
    struct Opened {
        std::string fileName;
        int streamIndex = 0;
        int decodersAtOnce = 0;
        int factories = 0; ///< how many there were then
    };
    struct Asked {
        boost::rational<__int64> time;
        int flags = 0;
    };
    /// How many objects there are now.
    struct Living {
        int factories = 0;
        int decoders = 0;
        int frames = 0;
        int locked = 0;

        friend bool operator==(const Living&, const Living&) = default;
    };

    ScriptedDecoders();
    ~ScriptedDecoders();
    ScriptedDecoders(const ScriptedDecoders&) = delete;
    ScriptedDecoders& operator=(const ScriptedDecoders&) = delete;

    KestoRenderLib::Size frameSize{4, 2};
    bool canOpen = true;
    bool hasFrames = true;
    bool canLock = true;
    bool hasPixels = true;

    /// Of a pixel of every frame: opaque, with its place in it.
    static std::uint32_t pixelAt(int x, int y) {
        return 0xFF000000U | static_cast<std::uint32_t>(y) << 8U | static_cast<std::uint32_t>(x);
    }

    std::vector<Opened> opened;
    std::vector<Asked> asked;
    Living living;
};

} // namespace TestSupport
