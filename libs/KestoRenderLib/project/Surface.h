#pragma once

#include "platform/KestoRenderProject.h"

namespace KestoRenderLib {

/// A frame in the making: transparent at first. Memory is taken only when it is written to, so that a single
/// picture that covers everything passes through as it is.
class Surface {
public:
    /// Drawing reaches no further than `clip`. `reusable` is memory of any content to draw into if its size
    /// fits; it may be empty.
    Surface(const Size& size, const Rect& clip, boost::shared_ptr<MetaBitmap> reusable);

    const Rect& clip() const { return clipped; }
    const Size& size() const { return extent; }
    /// Whether nothing was drawn yet.
    bool isBlank() const { return content == Content::Nothing; }

    /// Puts the whole of `picture` at (x, y), source-over. It is not changed, and may become the result.
    void put(const boost::shared_ptr<MetaBitmap>& picture, int x, int y, double opacity);

    /// The memory inside the clip, to draw over what is there. Null without memory, or without a clip.
    boost::shared_ptr<MetaBitmap> window();

    /// Multiplies what lies outside of `inside`.
    void fadeOutside(const Rect& inside, double opacity);

    /// Empty without memory. For reading alone if it came in through `put`.
    boost::shared_ptr<MetaBitmap> result();
    /// Memory that no picture owns, for another surface; may be empty.
    boost::shared_ptr<MetaBitmap> reusableMemory() const { return own; }

private:
    enum class Content { Nothing, Picture, OwnMemory };

    bool coversAll(const MetaBitmap& picture, int x, int y) const;
    bool takeMemory();
    bool makeWritable();

    Size extent;
    Rect clipped;
    boost::shared_ptr<MetaBitmap> own;
    boost::shared_ptr<MetaBitmap> passedThrough;
    Content content = Content::Nothing;
};

} // namespace KestoRenderLib
