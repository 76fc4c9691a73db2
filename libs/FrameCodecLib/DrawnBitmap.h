#pragma once

#include "platform/FrameCodecLib.h"
#include "platform/Gdiplus.h"

#include <memory>
#include <vector>

namespace FrameCodecLib {

/// A frame with pixels of its own, without gaps between its rows; transparent until it is drawn into.
class DrawnBitmap : public Bitmap {
public:
    /// All of `picture`, scaled to that size. Null where its file turns out to be damaged, which may show
    /// only when its pixels are decoded. Throws std::bad_alloc.
    static std::unique_ptr<DrawnBitmap> draw(Gdiplus::Bitmap& picture, int width, int height);

    int GetWidth() const override { return width; }
    int GetHeight() const override { return height; }
    int GetStride() const override;
    bool Lock() override {
        isLocked = true;
        return true;
    }
    unsigned char* GetPixels() override { return isLocked ? pixels.data() : nullptr; }
    void Unlock() override { isLocked = false; }

private:
    DrawnBitmap(int frameWidth, int frameHeight);

    int width;
    int height;
    std::vector<unsigned char> pixels;
    bool isLocked = false;
};

/// What a decoder was asked for by `Decoder::SetOutputSize`.
class OutputSize {
public:
    /// False for what that call refuses.
    bool set(int wantedWidth, int wantedHeight);

    int widthOr(int displayWidth) const { return width > 0 ? width : displayWidth; }
    int heightOr(int displayHeight) const { return height > 0 ? height : displayHeight; }

private:
    int width = 0; // both 0: the display size
    int height = 0;
};

} // namespace FrameCodecLib
