#pragma once

#include "KestoMediaLib/PlainMedia.h"
#include "platform/KestoMediaCallout.h"
#include "platform/KestoMediaCalloutWords.h"

#include <string>

namespace KestoMediaLib {

/// The parameter of that name, or `otherwise` if there is none of that name and type.
template <class T>
T paramOr(const VectorNode& node, const std::string& name, T otherwise) {
    const auto param = node.param(name);
    const T* value = param ? std::get_if<T>(&*param) : nullptr;
    return value ? *value : otherwise;
}

KESTO_EXPORT ArgbColor colorParamOr(const VectorNode& node, const std::string& name, ArgbColor otherwise);

} // namespace KestoMediaLib
