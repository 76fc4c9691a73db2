#pragma once

#include "KestoMediaLib/projectfile/JsonPlace.h"

#include <cstddef>
#include <string>

namespace KestoMediaLib::ProjectReading {

/// What goes with the reading of one project. After the first error reading goes on with harmless values, and
/// what comes out is thrown away.
struct ReadContext {
    /// What media and key frames may cost together; copies of library entries count again.
    static constexpr std::size_t budget = 1'000'000;
    static constexpr std::size_t mediaCost = 10;
    static constexpr std::size_t keyFrameCost = 1;

    /// Reports once there is too much.
    void spend(std::size_t cost, const JsonPlace& place);

    FirstError errors;
    std::string basePath;
    std::size_t spent = 0;
    std::size_t costOfEntry = 0; ///< what was spent on the library entry that is being read
};

} // namespace KestoMediaLib::ProjectReading
