#pragma once

#include "platform/Export.h"

namespace KestoThumbnailer {

/// Holds back what is pending. Any thread. Never destroyed through this interface.
class KESTO_EXPORT IPauseThumbnailing {
public:
    /// What runs already is not touched, and what is asked for is taken and kept.
    virtual void Pause() = 0;
    virtual void Resume() = 0;
    virtual bool IsPaused() = 0;

protected:
    ~IPauseThumbnailing() = default;
};

} // namespace KestoThumbnailer
