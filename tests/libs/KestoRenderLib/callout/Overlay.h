#pragma once

#include "platform/KestoMediaModel.h"
#include "platform/KestoRenderLib.h"

#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace CalloutTests {

using Params = std::map<std::string, KestoMediaLib::VectorNodeParam>;

constexpr __int64 red = 0xFFFF0000;
constexpr __int64 green = 0xFF00FF00;
constexpr __int64 blue = 0xFF0000FF;
constexpr __int64 black = 0xFF000000;

/// A callout of these words, and how it is asked for.
struct Sketch {
    std::string shape = "rectangle";
    Params params = {};
    std::string style = "plain";
    std::string kind = "remix";
    int width = 200;
    int height = 100;
    double seconds = 0; ///< the time that is drawn
    std::vector<KestoMediaLib::EdgeModification> edges = {};
    float scale = 1;
    bool transparent = true;
    bool antialiased = true;
};

boost::shared_ptr<const KestoMediaLib::Callout> calloutOf(const Sketch& sketch);

/// Pixels from (left, top) up to, and without, (right, bottom).
struct Extent {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;

    int width() const { return right - left; }
    int height() const { return bottom - top; }
    friend bool operator==(const Extent&, const Extent&) = default;
};
void PrintTo(const Extent& extent, std::ostream* out);

/// What a drawer gave.
class Overlay {
public:
    explicit Overlay(boost::shared_ptr<KestoRenderLib::MetaBitmap> drawn)
        : frame(std::move(drawn)) {}

    bool isEmpty() const { return !frame; }
    int width() const { return frame->GetWidth(); }
    int height() const { return frame->GetHeight(); }

    /// 0xAARRGGBB, premultiplied.
    std::uint32_t at(int x, int y) const;
    int alphaAt(int x, int y) const { return static_cast<int>(at(x, y) >> 24); }

    /// The smallest extent around the pixels that are more than a third opaque; all 0 when there are none.
    Extent painted() const;
    /// Of those for which `isMeant` is true.
    Extent painted(const std::function<bool(std::uint32_t argb)>& isMeant) const;
    /// How many pixels are more than a third opaque, in a column or row or at all.
    int paintedInColumn(int x) const;
    int paintedInRow(int y) const;
    int paintedPixels() const;
    bool hasAnything() const; ///< a pixel that is not wholly transparent

private:
    boost::shared_ptr<KestoRenderLib::MetaBitmap> frame;
};

Overlay draw(const Sketch& sketch);

} // namespace CalloutTests
