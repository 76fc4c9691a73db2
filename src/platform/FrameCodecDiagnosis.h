#pragma once

#include "platform/Export.h"

#include <string>

namespace FrameCodecLib {

/// Why `DecoderFactory::CreateDecoder` gave null.
enum class NoDecoderReason {
    NothingWrong, ///< a decoder is to be had; the file may have changed meanwhile
    Unreadable,   ///< missing, no regular file, or not to be opened
    UnknownFormat,
    Truncated, ///< an MP4 or QuickTime file that ends before the part that tells where its frames are
    NoVideo,   ///< no stream of video, or none of that number
    Unsupported,
    Damaged,
    TooLarge,    ///< over the pixel budget, or over the memory at hand
    OutOfTime,   ///< looking into it took longer than a call may
    Unavailable, ///< the decoding module is not installed
};

struct DecoderDiagnosis {
    NoDecoderReason reason = NoDecoderReason::NothingWrong;
    std::string sentence; ///< English, in UTF-8, and names the file
};

/// The word for a reason, which never changes: "unknown-format", "truncated", "no-video" ...
KESTO_EXPORT const char* WordForReason(NoDecoderReason reason);

/// Opens the file anew, as `CreateDecoder` does, and tells what stands against decoding that stream. To be
/// asked after a null decoder. Any thread.
KESTO_EXPORT DecoderDiagnosis DiagnoseDecoder(const std::string& fileName, int streamIndex);

} // namespace FrameCodecLib
