#pragma once

#include "platform/CalloutDrawer.h"
#include "platform/Threading.h"

#include <boost/shared_ptr.hpp>

#include <functional>
#include <vector>

namespace TestSupport {

/// One overlay that a callout drawer was asked for.
struct DrawnCallout {
    boost::shared_ptr<const KestoMediaLib::Callout> callout;
    __int64 time = 0;
    KestoRenderLib::Size size;
    KestoRenderLib::SizeF scale;
    bool transparent = false;
    bool antialiased = false;
};

/// A size that a callout drawer was asked to adjust.
struct AdjustedSize {
    KestoRenderLib::Size natural;
    bool isOneObject = false; ///< both arguments were the same
};

/// How callouts are drawn as long as this lives; without one, none is. One at a time. Set the public members
/// before the first callout is drawn; any thread may draw.
class DrawnCallouts {
public:
    DrawnCallouts();
    ~DrawnCallouts();
    DrawnCallouts(const DrawnCallouts&) = delete;
    DrawnCallouts& operator=(const DrawnCallouts&) = delete;

    /// Called with no lock held; without one, an overlay is an opaque `burntIn` of the time and of the size
    /// that was asked for.
    std::function<boost::shared_ptr<KestoRenderLib::MetaBitmap>(const DrawnCallout&)> draw;
    /// Without one, sizes stay as they are.
    std::function<KestoRenderLib::Size(const KestoRenderLib::Size&)> adjust;

    std::vector<DrawnCallout> drawn() const KESTO_EXCLUDES(lock);
    std::vector<AdjustedSize> adjusted() const KESTO_EXCLUDES(lock);

    /// Null without one.
    static DrawnCallouts* current();
    void record(const DrawnCallout& callout) KESTO_EXCLUDES(lock);
    void record(const AdjustedSize& size) KESTO_EXCLUDES(lock);

private:
    mutable Mutex lock;
    std::vector<DrawnCallout> overlays KESTO_GUARDED_BY(lock);
    std::vector<AdjustedSize> sizes KESTO_GUARDED_BY(lock);
};

} // namespace TestSupport
