#include "video/TimedFrames.h"

#include "ThumbnailRequest.h"
#include "video/MovingInput.h"

#include <KestoThumbnailer/platform/KestoRenderProject.h>

#include <fmt/format.h>

#include <algorithm>
#include <cstdint>
#include <utility>

namespace KestoHost {

namespace {

using KestoMediaLib::Project;
using KestoRenderLib::MetaBitmap;
using KestoRenderLib::ProjectGenerator;
using KestoRenderLib::ProjectOutcome;
using KestoRenderLib::Size;

ProjectOutcome projectOf(const std::string& input) {
    if (isProjectFile(input))
        return ProjectGenerator::TryProjectFromFile(input);
    // As many frames as there are moments: the project's frames then never lie between those of the media.
    return ProjectGenerator::TryMediaProject(input, KestoMediaLib::modelTimePerSecond);
}

Size canvasOf(const Project& project) {
    const auto timeline = project.timeline();
    return {static_cast<int>(timeline->attributeWidth()->value()),
            static_cast<int>(timeline->attributeHeight()->value())};
}

/// `problem` is the renderer's own sentence.
Failure whyNotOpened(const std::string& input, const std::string& problem) {
    Failure failure = whyNoVideo(input, trackByPathAlone);
    const bool isAboutContent = failure.reason == "unknown-format" || failure.reason == "nothing-wrong";
    if (isProjectFile(input) && isAboutContent)
        return {"bad-project", problem, /*withoutPicture=*/true};
    return failure;
}

bool isAllTransparent(const MetaBitmap& frame) {
    const auto rowLength = static_cast<std::ptrdiff_t>(frame.GetWidth()) * 4;
    for (int y = 0; y < frame.GetHeight(); ++y) {
        const unsigned char* row = frame.GetPixels() + static_cast<std::ptrdiff_t>(y) * frame.GetStride();
        if (std::any_of(row, row + rowLength, [](unsigned char byte) { return byte != 0; }))
            return false;
    }
    return true;
}

} // namespace

TimedFrames::Opened TimedFrames::open(const std::string& input) {
    if (const auto refusal = refusalOfCompoundFile(input))
        return {nullptr, *refusal};
    const ProjectOutcome outcome = projectOf(input);
    const boost::shared_ptr<const Project> project = outcome.project;
    if (!project)
        return {nullptr, whyNotOpened(input, outcome.problem)};
    const Size canvas = canvasOf(*project);
    if (canvas.width < 1 || canvas.height < 1)
        return {nullptr, {"no-canvas", fmt::format("\"{}\" has no size that could be shown.", input), true}};
    return {std::unique_ptr<TimedFrames>(new TimedFrames(project, !isProjectFile(input))), {}};
}

TimedFrames::TimedFrames(const boost::shared_ptr<const Project>& project, bool isMedia)
    : grabber(project)
    , frameClock(project->frameRate())
    , end(KestoMediaLib::endOfProject(*project))
    , size(canvasOf(*project))
    , emptyIsHole(isMedia) {}

boost::shared_ptr<MetaBitmap> TimedFrames::frameAt(ModelTime time) {
    auto frame =
        grabber.frameAtTime(frameClock.middleOf(frameClock.frameAt(time)), /*keepOrientation=*/true, {});
    if (frame && emptyIsHole && isAllTransparent(*frame))
        frame.reset();
    return frame;
}

std::unique_ptr<Gdiplus::Bitmap>
TimedFrames::viewAt(ModelTime time, const KestoMediaLib::Rect<double>& source, const Size& target) {
    constexpr int halfTransparent = 128;
    // The renderer counts from the middle of the canvas.
    const KestoMediaLib::Rect<double> centred(source.x - size.width / 2.0, source.y - size.height / 2.0,
                                              source.width, source.height);
    const auto frame =
        grabber.frameAtTimeForZoomNPan(frameClock.frameAt(time), target, centred, halfTransparent);
    if (!frame)
        return nullptr;
    const auto screen = grabber.viewport();
    auto view = std::make_unique<Gdiplus::Bitmap>(target.width, target.height, PixelFormat32bppARGB);
    Gdiplus::Graphics graphics(view.get());
    graphics.DrawImage(frame->AsGdiplusBitmap().get(), target.width / 2 - screen.width / 2,
                       target.height / 2 - screen.height / 2);
    return view;
}

} // namespace KestoHost
