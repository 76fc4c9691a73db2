#pragma once

#include "platform/Export.h"

namespace KestoMediaLib {

class Callout;
class ConstMediaDispatcher;
class Media;
class Mixer;
class Project;
class ProjectModel;
class SafeRational;
class Timeline;
class Track;

/// The root of what the media model is made of.
class KESTO_EXPORT KestoObject {
public:
    KestoObject() = default;
    KestoObject(const KestoObject&) = default;
    KestoObject(KestoObject&&) = default;
    KestoObject& operator=(const KestoObject&) = default;
    KestoObject& operator=(KestoObject&&) = default;
    virtual ~KestoObject() = default;
};

/// A rectangle by its corner and its size; `T` is `int` or `double`. All 0 at first.
template <class T>
class KESTO_EXPORT Rect : public KestoObject {
public:
    Rect() = default;
    Rect(T left, T top, T horizontalSize, T verticalSize)
        : x(left)
        , y(top)
        , width(horizontalSize)
        , height(verticalSize) {}

    T x = 0;
    T y = 0;
    T width = 0;
    T height = 0;
};

} // namespace KestoMediaLib
