#pragma once

#include "KestoMediaLib/EditableMedia.h"

#include <string>
#include <utility>

namespace KestoMediaLib {

/// Which file, in UTF-8 and complete with the project's folder, and which of its streams.
struct SourceFile {
    std::string fileName;
    int streamIndex = -1; ///< -1: the decoder's choice
};

/// A media of this model that shows or plays a file. `Base` is one that has an `IMediaSource`.
template <class Base>
class KESTO_EXPORT FileMediaOf : public Base {
public:
    explicit FileMediaOf(SourceFile file)
        : source(std::move(file)) {}

    std::string fileName() const override { return source.fileName; }
    int streamIndex() const override { return source.streamIndex; }

private:
    SourceFile source;
};

class KESTO_EXPORT VideoClip final : public FileMediaOf<VisualMediaOf<VideoFileMedia>> {
public:
    using FileMediaOf::FileMediaOf;
    void accept(ConstMediaDispatcher& dispatcher) const override;
    boost::shared_ptr<Media> clone() const override;
};

class KESTO_EXPORT ScreenRecordingClip final : public FileMediaOf<VisualMediaOf<VideoFileMedia>> {
public:
    using FileMediaOf::FileMediaOf;
    void accept(ConstMediaDispatcher& dispatcher) const override;
    boost::shared_ptr<Media> clone() const override;
};

class KESTO_EXPORT ImageClip final : public FileMediaOf<VisualMediaOf<ImageFileMedia>> {
public:
    using FileMediaOf::FileMediaOf;
    void accept(ConstMediaDispatcher& dispatcher) const override;
    boost::shared_ptr<Media> clone() const override;
};

/// Starts again when it is through, by the times of its frames alone.
class KESTO_EXPORT AnimatedGifClip final : public FileMediaOf<VisualMediaOf<ImageFileMedia>> {
public:
    using FileMediaOf::FileMediaOf;
    void accept(ConstMediaDispatcher& dispatcher) const override;
    boost::shared_ptr<Media> clone() const override;
};

class KESTO_EXPORT AudioFileMedia : public Media, public IMediaSource {};

/// Sound alone.
class KESTO_EXPORT AudioMedia final : public FileMediaOf<MediaOf<AudioFileMedia>> {
public:
    using FileMediaOf::FileMediaOf;
    void accept(ConstMediaDispatcher& dispatcher) const override;
    boost::shared_ptr<Media> clone() const override;
};

/// One page of a document.
class KESTO_EXPORT DocumentMedia final : public VisualMediaOf<VisualMedia> {
public:
    /// `page` counts from 1.
    DocumentMedia(std::string file, int page)
        : path(std::move(file))
        , pageNumber(page) {}

    const std::string& fileName() const { return path; }
    int page() const { return pageNumber; }

    void accept(ConstMediaDispatcher& dispatcher) const override;
    boost::shared_ptr<Media> clone() const override;

private:
    std::string path;
    int pageNumber;
};

/// One frame of a video, held for as long as the media plays.
class KESTO_EXPORT FreezeFrameMedia final : public VisualMediaOf<VisualMedia> {
public:
    /// `heldTime` is that of the frame in the file, in seconds.
    FreezeFrameMedia(SourceFile file, SafeRational heldTime)
        : source(std::move(file))
        , frameTime(heldTime) {}

    const std::string& fileName() const { return source.fileName; }
    int streamIndex() const { return source.streamIndex; }
    const SafeRational& heldTime() const { return frameTime; }

    void accept(ConstMediaDispatcher& dispatcher) const override;
    boost::shared_ptr<Media> clone() const override;

private:
    SourceFile source;
    SafeRational frameTime;
};

} // namespace KestoMediaLib
