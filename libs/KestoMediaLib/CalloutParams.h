#pragma once

#include "KestoMediaLib/PlainMedia.h"
#include "platform/KestoMediaCallout.h"

#include <span>
#include <string_view>

namespace KestoMediaLib {

/// What a drawing may be of, letter for letter.
KESTO_EXPORT std::span<const std::string_view> calloutKinds();
KESTO_EXPORT std::span<const std::string_view> calloutShapes();
KESTO_EXPORT std::span<const std::string_view> calloutStyles();

/// A parameter that a drawing may have.
struct CalloutParam {
    enum class Type {
        Text,   ///< std::string
        Choice, ///< std::string, one of `choices`
        Flag,   ///< bool
        Number, ///< double
        Count,  ///< __int64 if it is whole, else double
        Color,  ///< __int64 that holds an `ArgbColor`
        Path,   ///< std::string, in project files counted from their folder
    };

    std::string_view name;
    Type type;
    double lowest = 0; ///< of numbers
    double highest = 0;
    std::span<const std::string_view> choices = {};
};

/// All of them, by name; docs/callouts.md tells what each means.
KESTO_EXPORT std::span<const CalloutParam> calloutParams();

/// The parameter of that name, or `otherwise` if there is none of that name and type.
template <class T>
T paramOr(const VectorNode& node, const std::string& name, T otherwise) {
    const auto param = node.param(name);
    const T* value = param ? std::get_if<T>(&*param) : nullptr;
    return value ? *value : otherwise;
}

KESTO_EXPORT ArgbColor colorParamOr(const VectorNode& node, const std::string& name, ArgbColor otherwise);

} // namespace KestoMediaLib
