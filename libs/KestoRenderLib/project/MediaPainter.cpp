#include "KestoRenderLib/project/MediaPainter.h"

#include "KestoRenderLib/project/CalloutOnStage.h"
#include "KestoRenderLib/project/FrameSource.h"
#include "KestoRenderLib/project/MediaScene.h"
#include "KestoRenderLib/project/SourceCache.h"

#include "KestoMediaLib/CompoundMedia.h"
#include "KestoMediaLib/FileMedia.h"
#include "KestoMediaLib/MediaSpan.h"
#include "KestoMediaLib/PlainMedia.h"
#include "KestoMediaLib/ProjectModel.h"

#include <algorithm>

namespace KestoRenderLib {

namespace {

using namespace KestoMediaLib;

/// Deeper than any editor nests, and far from the end of the stack.
constexpr int deepestNesting = 64;

boost::rational<__int64> seconds(const SafeRational& time) {
    return {time.numerator(), time.denominator()};
}

/// Where a video of that length, started again and again, is at `time`.
SafeRational loopedTime(const SafeRational& time, const SafeRational& length) {
    if (length <= 0 || time < length)
        return time;
    const SafeRational rounds = time / length;
    return time - SafeRational(rounds.numerator() / rounds.denominator()) * length;
}

/// Draws a media by its class. For the kinds that are not named there is nothing to draw.
class PaintByKind final : public ConstMediaDispatcher {
public:
    PaintByKind(const MediaPainter& painter, const MediaScene& drawn)
        : owner(painter)
        , scene(drawn) {}

    void visitStitched(const StitchedMedia& media) override {
        scene.paintInside([&](Stage stage) {
            stage.everything = isShown();
            for (const auto& part : media.medias())
                owner.drawMedia(*part, scene.contentTime(), stage);
        });
    }

    void visitGroup(const GroupMedia& media) override {
        scene.paintInside([&](Stage stage) {
            stage.everything = isShown();
            for (const auto& track : media.tracks())
                owner.drawTrack(*track, scene.contentTime(), stage);
        });
    }

    /// The visual part plays and lies as the whole does, so the scene is the same.
    void visitUnified(const UnifiedMedia& media) override {
        media.accessInternals([&](const auto& /*audio*/, const auto& visual) {
            if (isShown() || owner.isAskedFor(*visual)) {
                PaintByKind inner(owner, scene);
                inner.asked = true;
                visual->accept(inner);
            }
        });
    }

    void visitColor(const ColorMedia& media) override {
        if (!isShown() || !scene.isInSight())
            return;
        FrameSource source = FrameSource::ofColor(media.color());
        scene.paint(source);
    }

    void visitVideo(const VideoFileMedia& media) override { paintVideo(media, media, contentSeconds()); }
    void visitScreenRecording(const VideoFileMedia& media) override {
        paintVideo(media, media, contentSeconds());
    }
    void visitFreezeFrame(const FreezeFrameMedia& media) override {
        paintVideo(media, media, media.heldTime());
    }

    void visitAnimatedGif(const ImageFileMedia& media) override {
        if (!isShown() || !scene.isInSight())
            return;
        GifSource& gif = owner.sources().gif(media, media.fileName());
        if (gif.size() == KestoRenderLib::Size()) // a file of another kind may move, too
            paintLooped(owner.sources().video(media, media.fileName(), media.streamIndex()));
        else
            paintLooped(gif);
    }

    void visitImage(const ImageFileMedia& media) override {
        if (isShown() && scene.isInSight())
            scene.paint(owner.sources().image(media.fileName()));
    }

    void visitDocument(const DocumentMedia& media) override {
        if (isShown() && scene.isInSight())
            scene.paint(owner.sources().page(media.fileName(), media.page()));
    }

    void visitCallout(const Callout& media) override {
        const auto callout = boost::dynamic_pointer_cast<const Callout>(media.weak_from_this().lock());
        if (callout && isShown())
            paintCallout(scene, callout);
    }

    void visitAudio(const AudioMedia&) override {}

private:
    bool isShown() const { return asked || scene.stage().everything; }
    SafeRational contentSeconds() const { return RationalUtil::toSeconds(scene.contentTime()); }

    template <class Source>
    void paintLooped(Source& source) {
        source.setTime(seconds(loopedTime(contentSeconds(), SafeRational(source.duration()))));
        scene.paint(source);
    }

    template <class File>
    void paintVideo(const Media& media, const File& file, const SafeRational& time) {
        if (!isShown() || !scene.isInSight())
            return;
        VideoSource& source = owner.sources().video(media, file.fileName(), file.streamIndex());
        source.setTime(seconds(time));
        scene.paint(source);
    }

    const MediaPainter& owner;
    const MediaScene& scene;
    bool asked = false;
};

} // namespace

void MediaPainter::drawTrack(const KestoMediaLib::Track& track, __int64 time, const Stage& stage) const {
    if (track.hidden())
        return;
    for (const auto& media : track.medias())
        drawMedia(*media, time, stage);
}

void MediaPainter::drawMedia(const KestoMediaLib::Media& media, __int64 time, const Stage& stage) const {
    const auto* visual = dynamic_cast<const KestoMediaLib::VisualMedia*>(&media);
    if (!visual || stage.depth > deepestNesting ||
        !KestoMediaLib::playsAt(KestoMediaLib::spanOf(media), time))
        return;
    Stage shown = stage;
    shown.everything = stage.everything || isAskedFor(media);
    const MediaScene scene(shown, *visual, time);
    PaintByKind painter(*this, scene);
    media.accept(painter);
}

bool MediaPainter::isAskedFor(const KestoMediaLib::Media& media) const {
    return std::any_of(only.begin(), only.end(), [&](const auto& listed) { return listed.get() == &media; });
}

} // namespace KestoRenderLib
