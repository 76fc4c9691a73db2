#pragma once

#include "platform/KestoMediaLib.h"

#include <boost/shared_ptr.hpp>

namespace KestoMediaLib {

class AudioMedia;
class ColorMedia;
class DocumentMedia;
class FreezeFrameMedia;
class GapMedia;
class GroupMedia;
class ImageFileMedia;
class PlaceholderMedia;
class StitchedMedia;
class UnifiedMedia;
class VideoFileMedia;

/// Tells media apart by their classes: `Media::accept` calls the operation of its own class, once.
class KESTO_EXPORT ConstMediaDispatcher {
public:
    virtual ~ConstMediaDispatcher() = default;

    virtual void visitStitched(const StitchedMedia& media) = 0;
    /// Sound alone.
    virtual void visitAudio(const AudioMedia& media) = 0;
    virtual void visitUnified(const UnifiedMedia& media) = 0;
    /// An area of one colour.
    virtual void visitColor(const ColorMedia& media) = 0;
    virtual void visitVideo(const VideoFileMedia& media) = 0;
    virtual void visitScreenRecording(const VideoFileMedia& media) = 0;
    virtual void visitImage(const ImageFileMedia& media) = 0;
    /// A media whose file was never there: a hole of some size.
    virtual void visitPlaceholder(const PlaceholderMedia& media);
    virtual void visitAnimatedGif(const ImageFileMedia& media) = 0;
    /// A page of a document.
    virtual void visitDocument(const DocumentMedia& media) = 0;
    /// One frame of a video, held.
    virtual void visitFreezeFrame(const FreezeFrameMedia& media) = 0;
    virtual void visitCallout(const Callout& media) = 0;
    /// Time in which nothing plays.
    virtual void visitGap(const GapMedia& media);
    /// Media on tracks of their own that move as one.
    virtual void visitGroup(const GroupMedia& media) = 0;
};

/// Keeps what it visited, as the class it is.
class KESTO_EXPORT MediaTypeFromMediaDispatcher : public ConstMediaDispatcher {
public:
    /// The callout visited last; empty if it was another kind of media, or one that no `boost::shared_ptr`
    /// owns.
    boost::shared_ptr<const Callout> GetCallout() const { return callout; }

    void visitStitched(const StitchedMedia& media) override;
    void visitAudio(const AudioMedia& media) override;
    void visitUnified(const UnifiedMedia& media) override;
    void visitColor(const ColorMedia& media) override;
    void visitVideo(const VideoFileMedia& media) override;
    void visitScreenRecording(const VideoFileMedia& media) override;
    void visitImage(const ImageFileMedia& media) override;
    void visitPlaceholder(const PlaceholderMedia& media) override;
    void visitAnimatedGif(const ImageFileMedia& media) override;
    void visitDocument(const DocumentMedia& media) override;
    void visitFreezeFrame(const FreezeFrameMedia& media) override;
    void visitCallout(const Callout& media) override;
    void visitGap(const GapMedia& media) override;
    void visitGroup(const GroupMedia& media) override;

private:
    boost::shared_ptr<const Callout> callout;
};

} // namespace KestoMediaLib
