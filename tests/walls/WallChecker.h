#pragma once

#include "walls/SourceTree.h"
#include "walls/WallTables.h"

#include <ostream>
#include <span>
#include <string>
#include <vector>

namespace Walls {

struct Breach {
    std::string file;
    int line = 0; ///< 0: not of a line
    std::string include;
    std::string rule;

    friend bool operator==(const Breach&, const Breach&) = default;
    friend std::ostream& operator<<(std::ostream& out, const Breach& breach) {
        return out << breach.file << ':' << breach.line << ": " << breach.include << ": " << breach.rule;
    }
};

/// Every include that a wall forbids and no exception allows, and every exception that nothing needs.
std::vector<Breach> findBreaches(const SourceTree& tree, std::span<const Exception> allowed);

} // namespace Walls
