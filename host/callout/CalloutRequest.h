#pragma once

#include "Arguments.h"

#include <nlohmann/json.hpp>

#include <string>
#include <vector>

namespace KestoHost {

/// Two factors, of width and height.
struct CalloutScale {
    double horizontal = 1;
    double vertical = 1;
};

/// What happens at a callout's start, and how long it takes.
struct CalloutEdge {
    std::string name;
    double seconds = 0;
};

/// One callout, and the picture to be made of it. The words and the parameters are as they were typed.
struct CalloutRequest {
    std::string kind;
    std::string shape;
    std::string style;
    nlohmann::json params = nlohmann::json::object();
    std::vector<CalloutEdge> edges;
    Bounds natural; ///< the callout's own size, in pixels
    CalloutScale scale;
    Bounds bounds;
    std::string output;
};

} // namespace KestoHost
