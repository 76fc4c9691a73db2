#pragma once

#include "platform/KestoMediaAttribute.h"

#include <utility>

namespace KestoMediaLib {

template <class T>
class KESTO_EXPORT ValueAttribute : public Attribute<T> {
public:
    explicit ValueAttribute(T initial = T())
        : held(std::move(initial)) {}

    T value() const override { return held; }
    void setValue(T value) { held = std::move(value); }

private:
    T held;
};

} // namespace KestoMediaLib
