#include "platform/FrameCodecDiagnosis.h"

#include "engine/Engine.h"
#include "engine/EngineModule.h"
#include "engine/FileSource.h"

#include <fmt/format.h>

#include <array>
#include <cstring>

namespace FrameCodecLib {

namespace {

using EngineBackend::Error;
using EngineBackend::ErrorKind;

/// ISO/IEC 14496-12, 4.3: most files of this family begin with a box of this type.
bool beginsAsMp4(const std::string& fileName) {
    constexpr std::size_t typeOffset = 4;
    std::array<std::byte, 8> head = {};
    const auto file = EngineBackend::FileSource::open(fileName);
    return file && (*file)->read(head) == static_cast<std::int64_t>(head.size()) &&
           std::memcmp(head.data() + typeOffset, "ftyp", 4) == 0;
}

NoDecoderReason reasonFor(ErrorKind kind) {
    switch (kind) {
    case ErrorKind::Unavailable:
        return NoDecoderReason::Unavailable;
    case ErrorKind::Unreadable:
        return NoDecoderReason::Unreadable;
    case ErrorKind::NotMedia:
        return NoDecoderReason::UnknownFormat;
    case ErrorKind::NoSuchStream:
        return NoDecoderReason::NoVideo;
    case ErrorKind::Unsupported:
        return NoDecoderReason::Unsupported;
    case ErrorKind::Damaged:
    case ErrorKind::Unwritable: // of nothing that is only read
        return NoDecoderReason::Damaged;
    case ErrorKind::TooLarge:
        return NoDecoderReason::TooLarge;
    case ErrorKind::OutOfTime:
        return NoDecoderReason::OutOfTime;
    }
    return NoDecoderReason::Damaged;
}

DecoderDiagnosis diagnosisOf(const Error& error, const std::string& fileName) {
    if (error.kind == ErrorKind::NotMedia && beginsAsMp4(fileName))
        return {
            NoDecoderReason::Truncated,
            fmt::format("\"{}\" begins as a video but ends before the part that tells where its frames are.",
                        fileName)};
    return {reasonFor(error.kind), error.message};
}

} // namespace

const char* WordForReason(NoDecoderReason reason) {
    switch (reason) {
    case NoDecoderReason::NothingWrong:
        return "nothing-wrong";
    case NoDecoderReason::Unreadable:
        return "unreadable";
    case NoDecoderReason::UnknownFormat:
        return "unknown-format";
    case NoDecoderReason::Truncated:
        return "truncated";
    case NoDecoderReason::NoVideo:
        return "no-video";
    case NoDecoderReason::Unsupported:
        return "unsupported";
    case NoDecoderReason::Damaged:
        return "damaged";
    case NoDecoderReason::TooLarge:
        return "too-large";
    case NoDecoderReason::OutOfTime:
        return "out-of-time";
    case NoDecoderReason::Unavailable:
        return "unavailable";
    }
    return "damaged";
}

DecoderDiagnosis DiagnoseDecoder(const std::string& fileName, int streamIndex) {
    const auto file = EngineBackend::openMediaFile(fileName);
    if (!file)
        return diagnosisOf(file.error(), fileName);
    const int best = (*file)->bestVideoStream();
    if (streamIndex == -1 && best < 0)
        return {NoDecoderReason::NoVideo, fmt::format("\"{}\" has no video in it.", fileName)};
    const auto reader = (*file)->readVideo(streamIndex == -1 ? best : streamIndex, {.readersAtOnce = 1});
    if (!reader)
        return diagnosisOf(reader.error(), fileName);
    return {NoDecoderReason::NothingWrong, fmt::format("\"{}\" can be decoded.", fileName)};
}

} // namespace FrameCodecLib
