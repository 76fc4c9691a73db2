#pragma once

#include "KestoMediaLib/EditableMedia.h"

#include <cstdint>

namespace KestoMediaLib {

/// Alpha, red, green, blue from the highest byte to the lowest; not premultiplied.
using ArgbColor = std::uint32_t;

/// An area of one colour.
class KESTO_EXPORT ColorMedia final : public VisualMediaOf<VisualMedia> {
public:
    explicit ColorMedia(ArgbColor fill)
        : argb(fill) {}

    ArgbColor color() const { return argb; }

    void accept(ConstMediaDispatcher& dispatcher) const override;
    boost::shared_ptr<Media> clone() const override;

private:
    ArgbColor argb;
};

/// Keeps the place of a media that is still to come. It shows nothing.
class KESTO_EXPORT PlaceholderMedia final : public VisualMediaOf<VisualMedia> {
public:
    void accept(ConstMediaDispatcher& dispatcher) const override;
    boost::shared_ptr<Media> clone() const override;
};

/// Time in which nothing plays, between parts of stitched media.
class KESTO_EXPORT GapMedia final : public MediaOf<Media> {
public:
    void accept(ConstMediaDispatcher& dispatcher) const override;
    boost::shared_ptr<Media> clone() const override;
};

} // namespace KestoMediaLib
