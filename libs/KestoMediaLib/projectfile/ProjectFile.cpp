#include "KestoMediaLib/ProjectFile.h"

#include "KestoMediaLib/ProjectModel.h"
#include "KestoMediaLib/projectfile/ContentReaders.h"
#include "KestoMediaLib/projectfile/FileBytes.h"
#include "KestoMediaLib/projectfile/JsonText.h"
#include "KestoMediaLib/projectfile/MediaReader.h"
#include "KestoMediaLib/projectfile/ProjectUpgrade.h"
#include "KestoMediaLib/projectfile/ValueReaders.h"

#include <boost/make_shared.hpp>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <utility>

namespace KestoMediaLib {

namespace {

using namespace ProjectReading; // NOLINT(google-build-using-namespace): this file is its door
using Fault = ProjectFileError::Fault;

constexpr std::string_view formatName = "kesto-project";
constexpr NumberRule canvasRule = {"pixels", 1, largestCanvas};
constexpr NumberRule frameRateRule = {"frames to the second", 1, 1000};
constexpr NumberRule versionRule = {"a version", 1, currentVersion};
constexpr __int64 frameRateParts = 1000;
constexpr __int64 largestRateDenominator = 100'000;

boost::rational<unsigned long> readFrameRate(const JsonPlace& place, FirstError& errors) {
    const SafeRational rate = readRational(place, frameRateRule, frameRateParts, errors);
    if (rate.denominator() > largestRateDenominator)
        errors.expected(place, fmt::format("a denominator of at most {}", largestRateDenominator));
    return {static_cast<unsigned long>(rate.numerator()), static_cast<unsigned long>(rate.denominator())};
}

void readCanvas(const JsonPlace& place, FirstError& errors, TimelineModel& timeline) {
    ObjectReader object(place, errors);
    if (const auto width = object.required("width"))
        timeline.setWidth(static_cast<float>(readNumber(*width, canvasRule, errors)));
    if (const auto height = object.required("height"))
        timeline.setHeight(static_cast<float>(readNumber(*height, canvasRule, errors)));
    object.finish();
}

/// The version that `document` says it is of; an error if that is none that can be read.
int readVersion(const JsonPlace& document, FirstError& errors) {
    ObjectReader object(document, errors);
    const auto format = object.required("format");
    if (format && format->value != formatName)
        errors.expected(*format, fmt::format("\"{}\"", formatName));
    const auto version = object.required("version");
    return version ? static_cast<int>(readWhole(*version, versionRule, errors)) : currentVersion;
}

boost::shared_ptr<Project> readContent(const JsonPlace& document, ReadContext& context) {
    ObjectReader object(document, context.errors);
    object.required("format");
    object.required("version");
    const auto rate = object.required("frameRate");
    const auto canvas = object.required("canvas");
    const auto library = object.optional("library");
    const auto tracks = object.required("tracks");
    object.finish();
    if (context.errors.any())
        return {};
    auto project = boost::make_shared<ProjectModel>(readFrameRate(*rate, context.errors));
    readCanvas(*canvas, context.errors, *project->editableTimeline());
    MediaReader media(context);
    if (library)
        media.readLibrary(*library);
    if (context.errors.any())
        return {};
    for (const auto& track : media.readTracks(*tracks))
        project->editableTimeline()->editableMixer()->addTrack(track);
    return project;
}

ProjectFileError errorOf(Fault fault, const std::string& file, const FirstError& error) {
    return {fault, file, error.pointer, error.message};
}

} // namespace

std::string ProjectFileError::text() const {
    return pointer.empty() ? fmt::format("{}: {}", file, message)
                           : fmt::format("{}: {}: {}", file, pointer, message);
}

ReadProject readProjectText(std::string_view text, const std::string& basePath, const std::string& name) {
    auto json = parseJson(text);
    if (!json)
        return tl::unexpected(
            ProjectFileError{Fault::Malformed, name, json.error().pointer, json.error().message});
    ReadContext context;
    context.basePath = basePath;
    const int version = readVersion({*json}, context.errors);
    if (context.errors.any())
        return tl::unexpected(errorOf(Fault::Foreign, name, context.errors));
    upgradeToCurrent(*json, version);
    auto project = readContent({*json}, context);
    if (context.errors.any())
        return tl::unexpected(errorOf(Fault::Invalid, name, context.errors));
    return project;
}

ReadProject readProjectFile(const std::string& path) {
    const auto bytes = readFileBytes(path);
    if (!bytes)
        return tl::unexpected(ProjectFileError{Fault::Unreadable, path, "", bytes.error()});
    return readProjectText(*bytes, folderOf(path), path);
}

} // namespace KestoMediaLib
