#pragma once

#include "platform/Export.h"
#include "platform/WinTypes.h"

#include <boost/rational.hpp>

#include <string>

namespace FrameCodecLib {

/// A decoded picture in its upright display shape: rows from the top, premultiplied B, G, R, A in memory. It
/// stays readable after its decoder is gone. One thread at a time.
class KESTO_EXPORT Bitmap {
public:
    virtual ~Bitmap() = default;

    virtual int GetWidth() const = 0;
    virtual int GetHeight() const = 0;
    /// Bytes from a row to the next below it.
    virtual int GetStride() const = 0;
    /// Makes the pixels ready to be read. False when there is no memory for them.
    virtual bool Lock() = 0;
    /// The top row; null unless locked. For reading alone: frames of the same time share their pixels.
    virtual unsigned char* GetPixels() = 0;
    virtual void Unlock() = 0;
};

/// Which frame was given, in seconds from the presentation's start: it is shown from `start` until before
/// `end`. `end` equals `start` when it is not known.
struct FrameTiming {
    boost::rational<__int64> start;
    boost::rational<__int64> end;
    bool isKeyFrame = false;
};

/// One video stream of a file. One thread at a time; different decoders are independent.
class KESTO_EXPORT Decoder {
public:
    virtual ~Decoder() = default;

    /// A new frame object, the caller's to delete: the frame whose interval of presentation covers `time`,
    /// in seconds, compared exactly; the first frame before the start, the last one after the end. Time 0 is
    /// the start of the presentation, after edit lists and whatever the file's first time stamp is. `flags`
    /// is 0; others are refused. Null without a frame to show; `timing` then stays as it is. A damaged part
    /// of a file gives the last good frame before it. Any call ends in bounded time.
    virtual Bitmap* GetFrameAtTime(boost::rational<__int64> time, FrameTiming& timing, int flags) = 0;

    /// The size of a picture as it is shown: turned upright, pixels made square. It is what frames have
    /// unless `SetOutputSize` says otherwise.
    virtual int GetDisplayWidth() const = 0;
    virtual int GetDisplayHeight() const = 0;
    /// In seconds; 0 when the file does not tell.
    virtual boost::rational<__int64> GetDuration() const = 0;
    /// The average, in frames per second; 0 when the file does not tell.
    virtual boost::rational<__int64> GetFrameRate() const = 0;

    /// From now on, all of each picture is delivered at this size, scaled from what was decoded in one step;
    /// 0 by 0 asks for the display size again. Scaling here spares the conversion of large pictures of which
    /// little is left. False for a size that is negative, 0 in one direction alone, or beyond the pixel
    /// budget; nothing changes then.
    virtual bool SetOutputSize(int width, int height) = 0;
};

/// Without state; any thread.
class KESTO_EXPORT DecoderFactory {
public:
    /// A new factory, the caller's to delete. It needs nothing and always comes.
    static DecoderFactory* Create();

    virtual ~DecoderFactory() = default;

    /// A new decoder, the caller's to delete, of a stream of the file `fileName` (UTF-8, looked up as
    /// `System.h` tells). Streams count from 0 in the order of the file; -1 is the one that a player would
    /// show. `decodersAtOnce` says how many decoders the caller means to keep busy at the same time, at least
    /// 1; they share the processor among them. If the process has started GDI+, a picture that does not move
    /// is a stream of one frame that is shown at all times, and a GIF is one pass of the frames that
    /// `AnimatedGif.h` tells of. Null when the file can't be read, the stream is none of video, or video
    /// can't be decoded here.
    virtual Decoder* CreateDecoder(const std::string& fileName, int streamIndex, int decodersAtOnce) = 0;
};

} // namespace FrameCodecLib
