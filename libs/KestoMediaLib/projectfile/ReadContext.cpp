#include "KestoMediaLib/projectfile/ReadContext.h"

#include <fmt/format.h>

#include <algorithm>

namespace KestoMediaLib::ProjectReading {

void ReadContext::spend(std::size_t cost, const JsonPlace& place) {
    spent += std::min(cost, budget + 1);
    costOfEntry += cost;
    if (spent > budget)
        errors.report(place, fmt::format("expected no more than {} media or {} key frames, found more",
                                         budget / mediaCost, budget / keyFrameCost));
}

} // namespace KestoMediaLib::ProjectReading
