#pragma once

#include "KestoMediaLib/CompoundMedia.h"
#include "KestoMediaLib/FileMedia.h"
#include "KestoMediaLib/PlainMedia.h"
#include "KestoMediaLib/ProjectModel.h"
#include "platform/KestoRenderProject.h"
#include "support/GdiplusUser.h"

#include <boost/make_shared.hpp>
#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <string>

namespace RenderTests {

using Frame = boost::shared_ptr<KestoRenderLib::MetaBitmap>;

/// Model time of so many frames at the 10 frames a second of every `Composition`.
__int64 frames(int count);

/// Premultiplied, 0xAARRGGBB.
std::uint32_t valueAt(const Frame& frame, int x, int y);

/// The rows of the frame from the top, each pixel by a letter: '.' transparent, 'R' 'G' 'B' 'W' 'K' opaque
/// pure colours, '?' anything else.
std::string lettersOf(const Frame& frame);

constexpr std::uint32_t red = 0xFFFF0000;
constexpr std::uint32_t green = 0xFF00FF00;
constexpr std::uint32_t blue = 0xFF0000FF;
constexpr std::uint32_t white = 0xFFFFFFFF;
constexpr std::uint32_t black = 0xFF000000;

/// Plays frames 0 to 9 in the middle of what holds it.
template <class Media>
boost::shared_ptr<Media> lasting(boost::shared_ptr<Media> media, int start = 0, int count = 10) {
    media->setSpan({.start = frames(start), .duration = frames(count)});
    return media;
}

boost::shared_ptr<KestoMediaLib::ColorMedia> colored(std::uint32_t argb, int width, int height);

/// Lays the middle of a media so far from the middle of what holds it, without changing the rest.
template <class Media>
boost::shared_ptr<Media> at(double x, double y, boost::shared_ptr<Media> media) {
    KestoMediaLib::Placement placement = media->placement();
    placement.position = {x, y};
    media->setPlacement(placement);
    return media;
}

/// Frame `frame` of `project` at the size of its canvas, by a pipeline of its own.
Frame rendered(const boost::shared_ptr<const KestoMediaLib::Project>& project, __int64 frame);

/// A project at 10 frames a second, and the pipeline that renders it. Media are added to a track of their
/// own, on top.
class Composition {
public:
    Composition(int canvasWidth, int canvasHeight);

    Composition& add(const boost::shared_ptr<KestoMediaLib::Media>& media);
    boost::shared_ptr<KestoMediaLib::TrackModel> addTrack();

    /// The frame at the size of the canvas, as it is without zoom.
    Frame render(__int64 frame = 0);

    boost::shared_ptr<KestoRenderLib::GdiDrawingManager> manager();
    KestoRenderLib::WRTimeline& timeline();
    KestoRenderLib::RenderState& state() { return *renderState; }
    const boost::shared_ptr<KestoMediaLib::ProjectModel>& project() const { return model; }

private:
    TestSupport::GdiplusUser gdiplus;
    KestoRenderLib::Size canvas;
    boost::shared_ptr<KestoMediaLib::ProjectModel> model;
    boost::shared_ptr<KestoRenderLib::GdiDrawingManager> drawingManager;
    boost::shared_ptr<KestoRenderLib::RenderState> renderState;
    boost::shared_ptr<KestoRenderLib::RenderObjectFactory> factory;
    boost::shared_ptr<KestoRenderLib::WRTimeline> wrTimeline;
};

} // namespace RenderTests
