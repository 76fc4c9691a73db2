#include "engine/ffmpeg/FoundFrame.h"

extern "C" {
#include <libavutil/frame.h>
}

namespace EngineBackend {

bool isKeyFrame(const AVFrame& frame) {
#ifdef AV_FRAME_FLAG_KEY
    return (frame.flags & AV_FRAME_FLAG_KEY) != 0;
#else
    return frame.key_frame != 0;
#endif
}

} // namespace EngineBackend
