#pragma once

#include "KestoRenderLib/project/Stage.h"

#include "platform/KestoMediaModel.h"
#include "platform/KestoRenderProject.h"

namespace KestoRenderLib {

class SourceCache;

/// Draws what plays at a moment. A media whose file is missing or damaged leaves a hole.
class MediaPainter {
public:
    /// With an empty list every media is drawn, else those in it and what lies inside them. Both outlive
    /// this.
    MediaPainter(SourceCache& sources, const MediaList& wanted)
        : cache(sources)
        , only(wanted) {}

    /// `time` is model time on the track's timeline.
    void drawTrack(const KestoMediaLib::Track& track, __int64 time, const Stage& stage) const;
    void drawMedia(const KestoMediaLib::Media& media, __int64 time, const Stage& stage) const;

    /// Whether it stands in the list itself.
    bool isAskedFor(const KestoMediaLib::Media& media) const;
    SourceCache& sources() const { return cache; }

private:
    SourceCache& cache;
    const MediaList& only;
};

} // namespace KestoRenderLib
