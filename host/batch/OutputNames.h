#pragma once

#include "batch/HashSet.h"
#include "batch/InputFiles.h"

#include <cstddef>
#include <string>
#include <unordered_map>

namespace KestoHost {

/// Gives each input of a run the name of its thumbnail: the input's own with the extension of the format, in
/// one folder. A name that was given before, or whose file is an input, gets a number: `photo-2.png`,
/// `photo-3.png`. Names that differ only in the case of ASCII letters count as one, since there are file
/// systems that take them for one. A file of an earlier run is no obstacle. The order of the inputs alone
/// decides, and the inputs and the folder as they were; 16 bytes or so are kept of a name.
class OutputNames {
public:
    /// Without a `folder`, names are in the current one. `inputs` must outlive this.
    OutputNames(std::string folder, std::string extension, InputFiles& inputs);

    struct Output {
        std::string path;
        bool numbered = false;
    };
    Output nameFor(const std::string& input);

private:
    std::string pathOf(const std::string& name) const;
    bool isFree(const std::string& name, const std::string& input) const;
    Output give(const std::string& name, bool numbered);

    std::string folder;
    std::string extension;
    InputFiles& inputs;
    HashSet given;
    // For names that many inputs share, so that finding a free number does not count up from 2 each time.
    std::unordered_map<std::string, std::size_t> lastNumbers;
};

} // namespace KestoHost
