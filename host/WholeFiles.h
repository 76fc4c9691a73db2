#pragma once

#include <string>
#include <vector>

namespace KestoHost {

/// Files that take their names together, when all are complete; without `commit` none of them stays.
class WholeFiles {
public:
    WholeFiles() = default;
    ~WholeFiles();
    WholeFiles(const WholeFiles&) = delete;
    WholeFiles& operator=(const WholeFiles&) = delete;

    /// Where to write what is to become the file `target`: in its folder, with its extension.
    std::string pathFor(const std::string& target);

    /// Writes a whole file. False when that fails.
    bool write(const std::string& target, const std::string& content);

    /// Replaces what the targets were. The first one that can't be replaced, such as a device, is given and
    /// ends it; empty when all are.
    std::string commit();

private:
    struct Pending {
        std::string written;
        std::string target;
    };
    std::vector<Pending> pending;
};

} // namespace KestoHost
