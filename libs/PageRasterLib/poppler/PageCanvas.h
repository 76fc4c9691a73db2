#pragma once

#include "PageRasterLib/PdfDocument.h"
#include "PageRasterLib/poppler/TimeLimit.h"

#include <SplashOutputDev.h>

namespace PageRasterLib {

/// What a page is drawn on: transparent at first, antialiased. Keeps poppler from work whose amount is not
/// bounded by the length of the document: for some of it there is a cheap equal, the rest ends the time
/// limit.
class PageCanvas : public SplashOutputDev {
public:
    /// `limit` must outlive the canvas.
    explicit PageCanvas(TimeLimit& limit);

    /// Lays the picture on opaque white paper, from the row `top` of `buffer` on. False when the picture is
    /// not of that size, for want of memory.
    bool putOnPaper(const PageSize& size, const PageBuffer& buffer, int top);

    void saveState(GfxState* state) override;
    void restoreState(GfxState* state) override;
    void updateLineDash(GfxState* state) override;
    bool tilingPatternFill(GfxState* state, Gfx* gfx, Catalog* catalog, GfxTilingPattern* pattern,
                           const double* matrix, int x0, int y0, int x1, int y1, double xStep,
                           double yStep) override;
    bool beginType3Char(GfxState* state, double x, double y, double dx, double dy, CharCode code,
                        const Unicode* unicode, int unicodeLength) override;

    void beginTransparencyGroup(GfxState* state, const double* box, GfxColorSpace* space, bool isolated,
                                bool knockout, bool forSoftMask) override;
    void endTransparencyGroup(GfxState* state) override;
    void drawImageMask(GfxState* state, Object* reference, Stream* data, int width, int height, bool invert,
                       bool interpolate, bool isInline) override;
    void drawImage(GfxState* state, Object* reference, Stream* data, int width, int height,
                   GfxImageColorMap* colours, bool interpolate, const int* maskColours,
                   bool isInline) override;
    void drawMaskedImage(GfxState* state, Object* reference, Stream* data, int width, int height,
                         GfxImageColorMap* colours, bool interpolate, Stream* mask, int maskWidth,
                         int maskHeight, bool maskInvert, bool maskInterpolate) override;
    void drawSoftMaskedImage(GfxState* state, Object* reference, Stream* data, int width, int height,
                             GfxImageColorMap* colours, bool interpolate, Stream* mask, int maskWidth,
                             int maskHeight, GfxImageColorMap* maskColours, bool maskInterpolate) override;

private:
    /// False, and the time limit ended, for an image that would take minutes.
    bool admitImage(int width, int height);

    TimeLimit* timeLimit;
    int savedStates = 0;
    int layers = 0;
};

} // namespace PageRasterLib
