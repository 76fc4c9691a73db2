#pragma once

#include "platform/Export.h"

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
        Color,  ///< __int64: alpha, red, green, blue from bit 24, 16, 8, 0 on
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

} // namespace KestoMediaLib
