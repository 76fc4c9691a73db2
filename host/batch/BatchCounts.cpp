#include "BatchCounts.h"

#include <nlohmann/json.hpp>

#include <cmath>

namespace KestoHost {

std::string jsonLine(const BatchCounts& counts, double seconds, bool interrupted) {
    const nlohmann::ordered_json object = {{"summary",
                                            {{"inputs", counts.all()},
                                             {"written", counts.written},
                                             {"withoutPicture", counts.withoutPicture},
                                             {"failed", counts.failed},
                                             {"interrupted", interrupted},
                                             {"milliseconds", std::round(seconds * 1000)}}}};
    return object.dump();
}

} // namespace KestoHost
