#pragma once

namespace KestoHost {

enum class ExitStatus {
    Done = 0,
    NoThumbnail = 1, ///< the arguments are right, but a picture was not written
    WrongUsage = 2,
};

/// Of a run that a signal broke off, as shells tell it.
constexpr ExitStatus statusOfSignal(int signal) {
    return static_cast<ExitStatus>(128 + signal);
}

} // namespace KestoHost
