#include "ThumbnailRequest.h"

#include "Paths.h"
#include "SourceKind.h"

#include <KestoThumbnailer/ThumbnailDiagnosis.h>

#include <fmt/format.h>

namespace KestoHost {

namespace {

std::optional<Failure> refusalOfName(const std::string& name) {
    if (const std::size_t end = name.find('\0'); end != std::string::npos)
        return Failure{"bad-name", fmt::format("\"{}\" is followed by a null byte, which no name may hold.",
                                               name.substr(0, end))};
    if (!wideFromUtf8(name))
        return Failure{"bad-name", fmt::format("\"{}\" is a name that is not valid UTF-8.", name)};
    return std::nullopt;
}

} // namespace

ThumbReport reportFor(const ThumbnailRequest& request) {
    ThumbReport report;
    report.input = request.input;
    report.output = request.output;
    report.sourceKind = sourceKindOf(request.input).word;
    report.seconds = request.seconds;
    return report;
}

std::optional<Failure> refusalOf(const ThumbnailRequest& request) {
    for (const std::string& name : {request.input, request.output})
        if (auto refusal = refusalOfName(name))
            return refusal;
    if (request.input.empty())
        return withoutPicture(request.input);
    if (isSameFile(request.input, request.output))
        return Failure{"same-file", fmt::format("\"{}\" would replace the input.", request.output)};
    return std::nullopt;
}

Failure withoutPicture(const std::string& input) {
    const auto diagnosis = KestoThumbnailer::DiagnoseStillImage(*wideFromUtf8(input));
    return {KestoThumbnailer::WordForReason(diagnosis.reason), diagnosis.sentence, /*withoutPicture=*/true};
}

Failure unwritten(const std::string& output) {
    const std::string why = whyNotWritable(output);
    const std::string ending = why.empty() ? "" : ": " + why;
    return {"not-written", fmt::format("\"{}\" can't be written{}.", output, ending)};
}

Failure internalFailure(const std::string& input, const char* what) {
    return {"internal", fmt::format("\"{}\" failed: {}", input, what)};
}

} // namespace KestoHost
