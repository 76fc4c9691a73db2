#include "pack/RecordingPacker.h"

#include "LetterCase.h"
#include "Paths.h"
#include "ThumbnailRequest.h"
#include "pack/PlumexWriter.h"

#include <KestoThumbnailer/ThumbnailDiagnosis.h>
#include <KestoThumbnailer/platform/RecordingWriter.h>
#include <KestoThumbnailer/platform/System.h>

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <exception>

namespace KestoHost {

namespace {

using KestoThumbnailer::NoThumbnailReason;

struct Role {
    const char* word;
    std::string PackRequest::*input;
    std::int32_t typeCode; ///< of a track
};

constexpr const char* eventsWord = "events";
constexpr std::int32_t noTypeCode = 0;

// The kind of file in `st_mode`.
constexpr unsigned fileKindMask = 0xF000;
constexpr unsigned regularFile = 0x8000;

constexpr std::array<Role, 5> roles = {{{"screen", &PackRequest::screen, 100},
                                        {"camera", &PackRequest::camera, 101},
                                        {"microphone", &PackRequest::audio, 102},
                                        {"system-audio", &PackRequest::systemAudio, 103},
                                        {eventsWord, &PackRequest::events, noTypeCode}}};

std::int32_t typeCodeOf(const PackPart& part) {
    const auto found = std::find_if(roles.begin(), roles.end(),
                                    [&part](const Role& role) { return part.role == role.word; });
    return found == roles.end() ? noTypeCode : found->typeCode;
}

/// As far as its folder tells; what is wrong with its content is told by who reads it.
std::optional<Failure> refusalOfEntry(const std::string& input) {
    const auto refusal = [&input](NoThumbnailReason reason, const char* predicate) {
        return Failure{KestoThumbnailer::WordForReason(reason), fmt::format("\"{}\" {}.", input, predicate)};
    };
    struct _stat64i32 entry = {};
    if (_stat64i32(input.c_str(), &entry) != 0) // without the right to look it may be there
        return errno == EACCES ? std::nullopt
                               : std::optional(refusal(NoThumbnailReason::Missing, "does not exist"));
    if ((entry.st_mode & fileKindMask) != regularFile)
        return refusal(NoThumbnailReason::NotAFile, "is not a regular file");
    return std::nullopt;
}

/// By the names and folders alone, so that nobody waits for a recording that could not be written.
std::optional<Failure> refusalOfNames(const std::vector<PackPart>& parts, const std::string& output) {
    for (const PackPart& part : parts) {
        ThumbnailRequest names;
        names.input = part.input;
        names.output = output;
        if (auto refusal = refusalOf(names))
            return refusal;
        if (auto refusal = refusalOfEntry(part.input))
            return refusal;
    }
    return whyNotWritable(output).empty() ? std::nullopt : std::optional(unwritten(output));
}

void packMosk(const std::vector<PackPart>& parts, PackReport& report) {
    std::vector<MOSK::NewTrack> tracks;
    std::string events;
    for (const PackPart& part : parts) {
        if (part.role == eventsWord)
            events = part.input;
        else
            tracks.push_back({part.input, typeCodeOf(part)});
        report.parts.push_back({part, "", /*isCopied=*/part.role == eventsWord});
    }
    const MOSK::WriteResult result = MOSK::WriteRecording(tracks, events, report.output);
    if (!result.isWritten)
        report.failure = Failure{result.reason, result.message};
    else if (result.isQuickTime)
        report.warning = fmt::format("\"{}\" has the QuickTime form, since MP4 has no place for one of the "
                                     "codecs; other programs may not play all of it",
                                     report.output);
}

void pack(const PackRequest& request, PackReport& report) {
    const std::vector<PackPart> parts = partsOf(request);
    report.failure = refusalOfNames(parts, request.output);
    if (report.failure)
        return;
    if (report.container == "plumex")
        writePlumex(parts, report);
    else
        packMosk(parts, report);
}

} // namespace

std::vector<PackPart> partsOf(const PackRequest& request) {
    std::vector<PackPart> parts;
    for (const Role& role : roles)
        if (!(request.*role.input).empty())
            parts.push_back({role.word, request.*role.input});
    return parts;
}

PackReport packRecording(const PackRequest& request) {
    using Clock = std::chrono::steady_clock;
    const Clock::time_point start = Clock::now();
    PackReport report;
    report.output = request.output;
    report.container = lowerCase(request.output).ends_with(".plumex") ? "plumex" : "mosk";
    try {
        pack(request, report);
    } catch (const std::exception& error) {
        report.failure = internalFailure(request.output, error.what());
    }
    report.milliseconds = std::chrono::duration<double, std::milli>(Clock::now() - start).count();
    return report;
}

} // namespace KestoHost
