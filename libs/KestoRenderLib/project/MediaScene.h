#pragma once

#include "KestoRenderLib/project/Box.h"
#include "KestoRenderLib/project/Stage.h"

#include "KestoMediaLib/Placement.h"

#include <functional>

namespace KestoRenderLib {

class IPictureSource;

/// One media at one moment, on a stage.
class MediaScene {
public:
    /// `time` is model time on the timeline that holds the media, which outlives this.
    MediaScene(const Stage& stage, const KestoMediaLib::VisualMedia& media, __int64 time);

    const Stage& stage() const { return around; }
    /// The moment of the content, in model time.
    __int64 contentTime() const { return content; }
    const KestoMediaLib::RationalTime& animationTime() const { return animation; }

    /// In the media's pixels; 0 where it has the size of what it shows.
    double width() const { return extentX; }
    double height() const { return extentY; }

    /// False where nothing of it could be seen, so that its file need not be opened.
    bool isInSight() const;

    /// With that of the stage.
    double fading() const { return opacity; }

    /// How many of the surface's pixels one of the media's comes to, in the direction in which it is more.
    double zoom() const;
    /// What the media touches of the surface's clip.
    Rect coveredPixels() const;

    /// Fills the media's area with a picture.
    void paint(IPictureSource& source) const;
    /// The same on another surface, whose first pixel is the one at (left, top) of the stage's, and without
    /// fading.
    void paintOnto(Surface& surface, int left, int top, IPictureSource& source) const;
    /// Draws what the media holds: `draw` is called once with the stage inside it, or not at all.
    void paintInside(const std::function<void(const Stage&)>& draw) const;

private:
    /// A media's own pixels: where they come to lie, and which are left by its crops.
    struct Area {
        Affine map;
        Box shown;
    };

    Area areaOf(double width, double height) const;
    void paintThrough(Surface& surface, const Affine& outer, double faded, IPictureSource& source) const;
    bool isCropped(const Area& area) const;
    Stage inside(Surface& surface, const Affine& map, double childOpacity) const;

    void paintThroughLayer(const Area& area, const std::function<void(const Stage&)>& draw) const;
    void paintThroughFrame(const Area& area, const std::function<void(const Stage&)>& draw) const;

    Stage around;
    const KestoMediaLib::Placement& placement;
    __int64 content;
    KestoMediaLib::RationalTime animation;
    double extentX;
    double extentY;
    double opacity; ///< with that of the stage
};

} // namespace KestoRenderLib
