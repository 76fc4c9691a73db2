#pragma once

#include "platform/KestoMediaLib.h"

namespace KestoMediaLib {

/// A value of the model that its owner may change, shared with those who read it.
template <class T>
class KESTO_EXPORT Attribute : public KestoObject {
public:
    virtual T value() const = 0;
};

} // namespace KestoMediaLib
