#pragma once

#include "platform/Export.h"

#include <cstdint>
#include <string>
#include <vector>

/// Makes recordings of ordinary media files. Encoded pictures and sounds are copied as they are, never
/// encoded anew. Paths are UTF-8, looked up as `System.h` tells. Without state; any thread.
namespace MOSK {

/// What writing came to. Without success no file appeared, and one that was there is as it was.
struct WriteResult {
    bool isWritten = false;
    bool isQuickTime = false; ///< of a `.mosk` file: MP4 has no place for one of the codecs
    /// Why nothing was written, in a word that stays the same from version to version: "unreadable",
    /// "unknown-format", "no-such-stream", "unsupported", "damaged", "too-large", "out-of-time",
    /// "unavailable" or "not-written".
    std::string reason = {};
    std::string message = {}; ///< a sentence for people, which names the file
};

/// A track of a new recording: `typeCode` as `MP4TrackReader` tells it, 100 to 103.
struct NewTrack {
    std::string path; ///< of a media file; the stream that a player would choose is taken
    std::int32_t typeCode = 0;
};

/// Writes a `.mosk` file of these tracks in their order; each begins at time 0. `dataPath` is a file whose
/// bytes become a track of format "qrl2" behind them, up to 256 MiB; empty for none. An unknown type code or
/// no track at all is "unsupported".
KESTO_EXPORT WriteResult WriteRecording(const std::vector<NewTrack>& tracks, const std::string& dataPath,
                                        const std::string& outputPath);

/// The containers of the members of a `.plumex` file.
enum class MemberContainer {
    Avi, ///< video in "Screen_Stream.avi"
    Asf, ///< video in "Camera_Stream.wmv"
    Wav, ///< sound in "Audio.wav" and "SysAudio.wav"
};

/// Whether a file is in that container already, with the kind of media that its member has.
KESTO_EXPORT bool IsMemberFile(const std::string& path, MemberContainer container);

/// Writes the one stream of a media file that a member needs into the member's container.
KESTO_EXPORT WriteResult WriteMemberFile(const std::string& path, MemberContainer container,
                                         const std::string& outputPath);

} // namespace MOSK
