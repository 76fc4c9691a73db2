#include "platform/FrameCodecLib.h"
#include "platform/KestoRenderLib.h"

#include <boost/make_shared.hpp>

#include <utility>

namespace KestoRenderLib {

namespace {

/// A decoder's frame, locked as long as it is looked at.
class LockedFrame {
public:
    explicit LockedFrame(boost::shared_ptr<FrameCodecLib::Bitmap> decoded)
        : bitmap(std::move(decoded))
        , isLocked(bitmap->Lock())
        , view({bitmap->GetWidth(), bitmap->GetHeight()}, bitmap->GetStride(), PixelFormat::Premultiplied32,
               isLocked ? bitmap->GetPixels() : nullptr, /*takeOwnership=*/false) {}
    ~LockedFrame() {
        if (isLocked)
            bitmap->Unlock();
    }
    LockedFrame(const LockedFrame&) = delete;
    LockedFrame& operator=(const LockedFrame&) = delete;

    MetaBitmap& frame() { return view; }

private:
    boost::shared_ptr<FrameCodecLib::Bitmap> bitmap;
    bool isLocked;
    MetaBitmap view;
};

} // namespace

boost::shared_ptr<MetaBitmap>
MetaBitmap::CreateReferenceToFrameCodecLibBitmap(boost::shared_ptr<FrameCodecLib::Bitmap> frame) {
    if (!frame)
        return {};
    const auto locked = boost::make_shared<LockedFrame>(std::move(frame));
    if (!locked->frame().GetPixels())
        return {};
    return {locked, &locked->frame()};
}

} // namespace KestoRenderLib
