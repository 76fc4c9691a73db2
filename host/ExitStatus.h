#pragma once

namespace KestoHost {

enum class ExitStatus {
    Done = 0,
    NoThumbnail = 1, ///< the arguments are right, but no picture was written
    WrongUsage = 2,
};

} // namespace KestoHost
