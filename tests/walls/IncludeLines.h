#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Walls {

enum class IncludeForm { Quoted, Angled };

struct IncludeLine {
    std::string target;
    IncludeForm form = IncludeForm::Quoted;
    int line = 0; ///< from 1

    friend bool operator==(const IncludeLine&, const IncludeLine&) = default;
};

/// The include lines of a source text, but for those in comments.
std::vector<IncludeLine> includesOf(std::string_view text);

} // namespace Walls
