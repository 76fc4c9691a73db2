#include "callout/CalloutMaker.h"

#include "GdiplusSession.h"
#include "Paths.h"
#include "ThumbnailRequest.h"

#include <KestoThumbnailer/GdiplusBitmapThumbnailingHelper.h>
#include <KestoThumbnailer/ImageHelper.h>
#include <KestoThumbnailer/platform/KestoMediaModel.h>
#include <KestoThumbnailer/platform/KestoRenderProject.h>

#include <CLI/Error.hpp>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <chrono>
#include <cmath>
#include <exception>
#include <memory>

namespace KestoHost {

namespace {

using Json = nlohmann::ordered_json;
using CalloutPointer = boost::shared_ptr<const KestoMediaLib::Callout>;

Json edgesOf(const CalloutRequest& request) {
    Json edges = Json::array();
    for (const CalloutEdge& edge : request.edges)
        edges.push_back({{"name", edge.name}, {"edge", "start"}, {"duration", edge.seconds}});
    return edges;
}

Json mediaOf(const CalloutRequest& request) {
    return {{"kind", "callout"},
            {"duration", 1},
            {"width", request.natural.width},
            {"height", request.natural.height},
            {"scale", {request.scale.horizontal, request.scale.vertical}},
            {"drawing",
             {{"kind", request.kind},
              {"shape", request.shape},
              {"style", request.style},
              {"params", Json(request.params)}}},
            {"edges", edgesOf(request)}};
}

/// "project: /tracks/0/media/0/drawing/params/FontSize: expected ..." is about FontSize for whoever typed
/// it, and about nothing that stands in a file.
std::string withoutPlace(const std::string& problem) {
    const std::string place = "/media/0/";
    const std::size_t start = problem.find(place);
    const std::size_t end = problem.find(": ", start);
    if (start == std::string::npos || end == std::string::npos)
        return problem;
    const std::size_t slash = problem.rfind('/', end);
    return problem.substr(slash + 1);
}

CalloutPointer calloutOf(const CalloutRequest& request) {
    const auto outcome = KestoRenderLib::ProjectGenerator::TryProjectFromJson(projectTextOf(request), "");
    if (!outcome.project)
        throw CLI::ValidationError(withoutPlace(outcome.problem));
    const auto media = outcome.project->timeline()->mixer()->tracks().at(0)->medias().at(0);
    return KestoMediaLibUtl::ConvertMedia(media).GetCallout();
}

Failure drawsNothing(const CalloutRequest& request) {
    return {"no-picture",
            fmt::format("A callout of kind {} and shape {} with these values draws nothing.", request.kind,
                        request.shape),
            /*withoutPicture=*/true};
}

std::optional<Failure> drawAndWrite(const CalloutPointer& callout, CalloutReport& report) {
    const CalloutRequest& request = report.request;
    const std::unique_ptr<Gdiplus::Bitmap> picture(
        KestoThumbnailer::GdiplusBitmapThumbnailingHelper::GetThumbnailForCallout(
            callout, request.bounds.width, request.bounds.height));
    if (!picture)
        return drawsNothing(request);
    if (!KestoThumbnailer::ImageHelper::QuickSavePic(picture.get(), request.output))
        return unwritten(request.output);
    report.width = static_cast<int>(picture->GetWidth());
    report.height = static_cast<int>(picture->GetHeight());
    return std::nullopt;
}

} // namespace

std::string projectTextOf(const CalloutRequest& request) {
    const Json project = {{"format", "kesto-project"},
                          {"version", 2},
                          {"canvas", {{"width", 16}, {"height", 16}}},
                          {"frameRate", 30},
                          {"tracks", Json::array({{{"media", Json::array({mediaOf(request)})}}})}};
    return project.dump();
}

CalloutReport makeCallout(const CalloutRequest& request) {
    using Clock = std::chrono::steady_clock;
    CalloutReport report;
    report.request = request;
    const GdiplusSession session;
    const Clock::time_point start = Clock::now();
    const CalloutPointer callout = calloutOf(request);
    if (!wideFromUtf8(request.output)) {
        report.failure =
            Failure{"bad-name", fmt::format("\"{}\" is a name that is not valid UTF-8.", request.output)};
        return report;
    }
    try {
        report.failure = drawAndWrite(callout, report);
    } catch (const std::exception& error) {
        report.failure = internalFailure(request.output, error.what());
    }
    report.milliseconds = std::chrono::duration<double, std::milli>(Clock::now() - start).count();
    return report;
}

std::string jsonText(const CalloutReport& report) {
    Json object = {
        {"output", report.request.output},
        {"width", nullptr},
        {"height", nullptr},
        {"sourceKind", "callout"},
        {"kind", report.request.kind},
        {"shape", report.request.shape},
        {"style", report.request.style},
        {"milliseconds", std::round(report.milliseconds * 1000) / 1000},
    };
    if (report.failure) {
        object["reason"] = report.failure->reason;
        object["message"] = report.failure->message;
    } else {
        object["width"] = report.width;
        object["height"] = report.height;
    }
    return object.dump(2, ' ', /*ensure_ascii=*/false, Json::error_handler_t::replace);
}

} // namespace KestoHost
