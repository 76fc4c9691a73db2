#pragma once

#include "batch/HashSet.h"

#include <span>
#include <string>

namespace KestoHost {

/// Which files are inputs of a run, so that no thumbnail takes the place of one.
class InputFiles {
public:
    virtual ~InputFiles() = default;

    /// Tells of an input before its output is named.
    virtual void begin(const std::string& input) = 0;

    /// Whether `path` names an input, or what might still become one.
    virtual bool mayInclude(const std::string& path) const = 0;
};

/// Inputs that are all known before the first is begun.
class ListedInputFiles final : public InputFiles {
public:
    explicit ListedInputFiles(std::span<const std::string> inputs);

    void begin(const std::string&) override {}
    bool mayInclude(const std::string& path) const override;

private:
    HashSet names;
};

/// Inputs that come one by one. As soon as one of them lies in the output folder, each file there may be one
/// that is still to come.
class StreamedInputFiles final : public InputFiles {
public:
    explicit StreamedInputFiles(const std::string& outputFolder);

    void begin(const std::string& input) override;
    bool mayInclude(const std::string& path) const override;

private:
    std::string folder;
    bool inputsLieThere = false;
};

} // namespace KestoHost
