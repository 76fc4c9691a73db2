#pragma once

#include "platform/KestoMediaDispatcher.h"

#include <cstdint>
#include <string>

namespace KestoMediaLib {

class IMediaSource;

}

namespace KestoThumbnailer {

/// Tells how the frames of the media are to be had that accept it.
class MediaFrameGrabberDispatcher final : public KestoMediaLib::ConstMediaDispatcher {
public:
    bool usesFrameCodec = false; ///< a file can be decoded: `sourceName` and `streamIndex`
    bool isCallout = false;
    bool hasNoPicture = false;
    std::string sourceName;
    std::int32_t streamIndex = -1;

    void visitStitched(const KestoMediaLib::StitchedMedia& media) override;
    void visitAudio(const KestoMediaLib::AudioMedia& media) override;
    void visitUnified(const KestoMediaLib::UnifiedMedia& media) override;
    void visitColor(const KestoMediaLib::ColorMedia&) override {}
    void visitVideo(const KestoMediaLib::VideoFileMedia& media) override;
    void visitScreenRecording(const KestoMediaLib::VideoFileMedia& media) override;
    void visitImage(const KestoMediaLib::ImageFileMedia& media) override;
    void visitAnimatedGif(const KestoMediaLib::ImageFileMedia& media) override;
    void visitDocument(const KestoMediaLib::DocumentMedia&) override {}
    void visitFreezeFrame(const KestoMediaLib::FreezeFrameMedia&) override {}
    void visitCallout(const KestoMediaLib::Callout& media) override;
    void visitGroup(const KestoMediaLib::GroupMedia&) override {}

private:
    void Decode(const KestoMediaLib::IMediaSource& source);
};

} // namespace KestoThumbnailer
