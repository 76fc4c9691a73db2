#pragma once

#include "platform/CommandQueueThread.h"
#include "platform/Export.h"
#include "platform/Gdiplus.h"

#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <stdexcept>

namespace FrameCodecLib {

class Bitmap;

}

namespace KestoRenderLib {

/// A call that its caller should not have made; `what()` says why.
class KESTO_EXPORT KestoRenderLibException : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// In pixels.
struct Size {
    std::int32_t width = 0;
    std::int32_t height = 0;

    friend bool operator==(const Size&, const Size&) = default;
};

enum class PixelFormat {
    Premultiplied32 = 0, ///< B, G, R, A in memory, premultiplied
};

/// A rendered or decoded frame: rows from the top, premultiplied 32-bit pixels. Passed around in a
/// `boost::shared_ptr`; an empty pointer means no picture. One writer at a time.
class KESTO_EXPORT MetaBitmap {
public:
    /// Over `pixels`, without copying: `stride` bytes from a row to the next below it. With `takeOwnership`
    /// the memory is given back with `delete[]`, else it must outlive the frame.
    MetaBitmap(const KestoRenderLib::Size& size, int stride, PixelFormat format, unsigned char* pixels,
               bool takeOwnership);
    ~MetaBitmap();
    MetaBitmap(const MetaBitmap&) = delete;
    MetaBitmap& operator=(const MetaBitmap&) = delete;

    /// With memory of its own, all transparent. Empty for a size below 1 or without memory for it.
    static boost::shared_ptr<MetaBitmap> Create(const KestoRenderLib::Size& size, PixelFormat format);

    /// Over the frame's own pixels, without copying: for reading alone. The frame stays locked, and alive, as
    /// long as what is returned; it must not be locked before. Empty for an empty pointer, and for a frame
    /// that can't be locked.
    static boost::shared_ptr<MetaBitmap>
    CreateReferenceToFrameCodecLibBitmap(boost::shared_ptr<FrameCodecLib::Bitmap> frame);

    /// The same pixels in memory of its own, whosever memory this frame has. Empty for a size below 1 or
    /// without memory for it.
    boost::shared_ptr<MetaBitmap> CreateCopy() const;

    KestoRenderLib::Size Size() const { return size; }
    int GetWidth() const { return size.width; }
    int GetHeight() const { return size.height; }
    int GetStride() const { return stride; }
    unsigned char* GetPixels() const { return pixels; }

    /// Turns the frame upside down, in its own memory.
    void FlipY();

    /// A `32bppPARGB` bitmap over the frame's own memory, so that drawing into one shows in the other. It
    /// does not keep the memory alive: the frame must outlive it. A frame without pixels gives one that tells
    /// so in its last status.
    boost::shared_ptr<Gdiplus::Bitmap> AsGdiplusBitmap() const;

private:
    unsigned char* Row(int y) const;

    KestoRenderLib::Size size;
    int stride;
    unsigned char* pixels;
    bool ownsPixels;
};

/// Without state; any thread, one at a time for one frame.
class KESTO_EXPORT MetaBitmapHelper {
public:
    MetaBitmapHelper() = delete;

    /// Scales all of `source` into all of `destination`, whose pixels are replaced: cubic, on premultiplied
    /// values, area-aware when it shrinks, and an exact copy where the sizes are equal. The two must not
    /// overlap in memory. The process must have started GDI+. False for a null frame, a size below 1, or
    /// without memory; `destination` may then be changed.
    static bool HighQualityScale(MetaBitmap* source, MetaBitmap* destination);
};

} // namespace KestoRenderLib
