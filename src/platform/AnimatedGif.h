#pragma once

#include "platform/Export.h"
#include "platform/FrameCodecLib.h"
#include "platform/GdiplusTypes.h"

#include <boost/shared_ptr.hpp>

#include <memory>
#include <string>

namespace FrameCodecLib {

/// The frames of a GIF file, composed on its logical screen as a browser composes them: transparent where no
/// frame has drawn, and where a frame says so. Frames share their pixels and stay readable after the loader
/// is gone. One thread at a time; different loaders are independent.
///
/// A damaged or cut file has its frames up to the damage, the last of them with what pixels there are. A
/// delay of less than 20 ms counts as 100 ms. A file without a word about loops is played once; one that
/// names a number is played as often again, and 0 is for ever. What follows 100,000 frames is left.
class KESTO_EXPORT WICAnimatedGIFLoader {
public:
    /// Reads the file up to the first frame's header, and the rest as it is needed. `path` is looked up as
    /// `System.h` tells.
    explicit WICAnimatedGIFLoader(const std::wstring& path);
    ~WICAnimatedGIFLoader();
    WICAnimatedGIFLoader(const WICAnimatedGIFLoader&) = delete;
    WICAnimatedGIFLoader& operator=(const WICAnimatedGIFLoader&) = delete;

    /// 0: there is no such file, it is no GIF, has no frame, or is larger than the pixel budget. Nothing can
    /// be read then. Not to be changed.
    unsigned char valid = 0;

    /// Frames count from 0. An index behind the last frame gives the last one, so that a file with one frame
    /// has a picture wherever its second is asked for. Empty for an index below 0, for a file that is not
    /// valid, without memory, and when a call has taken 30 seconds (KESTO_VIDEO_TIME_LIMIT_MS).
    boost::shared_ptr<Bitmap> GetFrameAtIndex(int index);

    /// The frame shown at `time`, in seconds from the start of the first pass: the first one before the start
    /// and for what is no number, the last one after the last pass. Empty as above.
    boost::shared_ptr<Bitmap> GetFrameAtTime(double time);

    /// What the logical screen is filled with by the file's own word: always opaque, also where the entry of
    /// the palette serves as transparent in frames. Transparent when the file names no such colour.
    Gdiplus::Color GetGdiplusBackgroundColor() const;

    /// Of the logical screen, in pixels; 0 when not valid.
    int GetWidth() const;
    int GetHeight() const;

    // The first two read the whole file, though no pixels.
    int GetFrameCount();
    /// Of one pass, in seconds.
    boost::rational<__int64> GetDuration();

    /// The index of the frame that `GetFrameAtTime` gives; -1 when not valid.
    int GetFrameIndexAtTime(double time);
    /// When in the first pass the frame is shown; for an index behind the last frame, as above. All 0 for an
    /// index below 0, and when not valid.
    FrameTiming GetFrameTiming(int index);

private:
    class File;

    std::unique_ptr<File> file; ///< null when not valid
};

} // namespace FrameCodecLib
