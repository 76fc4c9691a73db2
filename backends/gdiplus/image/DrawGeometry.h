#pragma once

namespace GdiplusBackend {

/// One direction of a draw that maps a length of the source to a length of the target. Negative lengths run
/// backwards from their start.
struct DrawAxis {
    double targetStart = 0;
    double targetLength = 0;
    double sourceStart = 0;
    double sourceLength = 0;
};

/// The part of a draw that is really painted, in one direction.
struct PaintedAxis {
    int first = 0; ///< target pixels [first, last)
    int last = 0;
    double sourceStart = 0; ///< what they show, in pixels of the picture, or of the mirrored picture
    double sourceLength = 0;
    bool mirrored = false;

    bool isEmpty() const { return first >= last; }
    int length() const { return last - first; }
};

/// Cuts a draw to the pixels of the target whose centres show a place inside the picture. The mapping is that
/// of the whole draw: cutting never changes the scale. Anything not finite paints nothing.
///
///     source   [...|== picture ==|...]      sourceStart and sourceLength may reach outside
///     target       [== painted ==]          rounded to pixel centres, cut to [0, targetSize)
PaintedAxis cutToPicture(DrawAxis axis, int pictureSize, int targetSize);

} // namespace GdiplusBackend
