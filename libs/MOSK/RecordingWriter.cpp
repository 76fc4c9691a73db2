#include "platform/RecordingWriter.h"

#include "MOSK/FileTarget.h"
#include "MOSK/TrackRole.h"

#include "engine/Engine.h"
#include "engine/EngineModule.h"
#include "engine/FileSource.h"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <new>
#include <system_error>

namespace MOSK {

namespace {

using namespace EngineBackend;

constexpr std::string_view dataHandlerName = "Kesto Events";

const char* wordFor(ErrorKind kind) {
    switch (kind) {
    case ErrorKind::Unavailable:
        return "unavailable";
    case ErrorKind::Unreadable:
        return "unreadable";
    case ErrorKind::NotMedia:
        return "unknown-format";
    case ErrorKind::NoSuchStream:
        return "no-such-stream";
    case ErrorKind::Unsupported:
        return "unsupported";
    case ErrorKind::Damaged:
        return "damaged";
    case ErrorKind::TooLarge:
        return "too-large";
    case ErrorKind::OutOfTime:
        return "out-of-time";
    case ErrorKind::Unwritable:
        return "not-written";
    }
    return "damaged";
}

struct ContainerOfMember {
    RemuxContainer container;
    StreamKind kind;
    const char* format; ///< as the engine calls it
};

ContainerOfMember describe(MemberContainer container) {
    switch (container) {
    case MemberContainer::Avi:
        return {RemuxContainer::Avi, StreamKind::Video, "avi"};
    case MemberContainer::Asf:
        return {RemuxContainer::Asf, StreamKind::Video, "asf"};
    case MemberContainer::Wav:
        return {RemuxContainer::Wav, StreamKind::Audio, "wav"};
    }
    return {RemuxContainer::Avi, StreamKind::Video, "avi"};
}

Result<RemuxTrack> makeTrack(const std::string& path, StreamKind kind, std::string_view handlerName) {
    auto source = FileSource::open(path);
    if (!source)
        return tl::unexpected(source.error());
    return RemuxTrack{std::move(*source), path, kind, std::string(handlerName)};
}

Result<RemuxJob> planRecording(const std::vector<NewTrack>& tracks, const std::string& dataPath) {
    RemuxJob job;
    if (tracks.empty())
        return failure(ErrorKind::Unsupported, "a recording of at least one track is expected");
    for (const NewTrack& track : tracks) {
        const auto role = static_cast<TrackRole>(track.typeCode);
        const std::string_view name = handlerNameOf(role);
        if (name.empty())
            return failure(ErrorKind::Unsupported,
                           fmt::format("{}: a type code from 100 to 103 is expected, found {}", track.path,
                                       track.typeCode));
        auto made = makeTrack(track.path, kindOf(role), name);
        if (!made)
            return tl::unexpected(made.error());
        job.tracks.push_back(std::move(*made));
    }
    if (dataPath.empty())
        return job;
    auto data = FileSource::open(dataPath);
    if (!data)
        return tl::unexpected(data.error());
    job.data.push_back(
        {std::move(*data), dataPath, std::string(dataHandlerName), std::string(recordingDataFormat)});
    return job;
}

std::string whyUnwritable(int error) {
    return error == ESPIPE ? "a pipe or a device; a regular file is expected"
                           : std::generic_category().message(error);
}

Result<RemuxOutcome> writeFile(RemuxJob job, const std::string& outputPath) {
    const auto loaded = engine();
    if (!loaded)
        return tl::unexpected(loaded.error());
    FileTarget target(outputPath);
    const auto refuse = [&] {
        return failure(ErrorKind::Unwritable,
                       fmt::format("{}: {}", outputPath, whyUnwritable(target.error())));
    };
    if (!target.good())
        return refuse();
    auto done = (*loaded)->remux(std::move(job), target);
    if (!target.good())
        return refuse();
    if (done && !target.commit())
        return refuse();
    return done;
}

WriteResult resultOf(const Result<RemuxOutcome>& outcome) {
    if (!outcome)
        return {.reason = wordFor(outcome.error().kind), .message = outcome.error().message};
    return {.isWritten = true, .isQuickTime = outcome->isQuickTime};
}

/// One answer where memory ends, too.
template <typename Plan>
WriteResult writeAsPlanned(const Plan& plan, const std::string& outputPath) {
    try {
        Result<RemuxJob> job = plan();
        return resultOf(job ? writeFile(std::move(*job), outputPath) : tl::unexpected(job.error()));
    } catch (const std::bad_alloc&) {
        return {.reason = wordFor(ErrorKind::TooLarge),
                .message = fmt::format("{}: not enough memory to write it", outputPath)};
    }
}

} // namespace

WriteResult WriteRecording(const std::vector<NewTrack>& tracks, const std::string& dataPath,
                           const std::string& outputPath) {
    return writeAsPlanned([&] { return planRecording(tracks, dataPath); }, outputPath);
}

bool IsMemberFile(const std::string& path, MemberContainer container) {
    const ContainerOfMember wanted = describe(container);
    const auto file = openMediaFile(path);
    return file && (*file)->format() == wanted.format &&
           std::ranges::any_of((*file)->streams(),
                               [&](const StreamFacts& stream) { return stream.kind == wanted.kind; });
}

WriteResult WriteMemberFile(const std::string& path, MemberContainer container,
                            const std::string& outputPath) {
    const ContainerOfMember wanted = describe(container);
    return writeAsPlanned(
        [&]() -> Result<RemuxJob> {
            auto track = makeTrack(path, wanted.kind, {});
            if (!track)
                return tl::unexpected(track.error());
            RemuxJob job;
            job.container = wanted.container;
            job.tracks.push_back(std::move(*track));
            return job;
        },
        outputPath);
}

} // namespace MOSK
