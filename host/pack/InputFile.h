#pragma once

#include "Report.h"

#include <KestoThumbnailer/platform/System.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>

namespace KestoHost {

/// A file that goes into a recording, found as the library finds files. It is open from the start: who
/// removes its name does not take it away.
class InputFile {
public:
    /// `path` is valid UTF-8.
    explicit InputFile(const std::string& path);

    /// In bytes, as it was opened; 0 without a file.
    std::uint64_t size() const { return length; }
    /// Reads on; the bytes that were read, none at the end and after a failure.
    std::size_t read(std::span<char> into);

    /// Why it can't be read; nothing when nothing went wrong.
    const std::optional<Failure>& failure() const { return firstFailure; }

private:
    struct Close {
        void operator()(HANDLE handle) const { CloseHandle(handle); }
    };

    void fail(const std::string& why);

    std::string name;
    std::unique_ptr<void, Close> file;
    std::uint64_t length = 0;
    std::optional<Failure> firstFailure;
};

} // namespace KestoHost
