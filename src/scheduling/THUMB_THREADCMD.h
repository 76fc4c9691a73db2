#pragma once

#include <boost/any.hpp>

#include <cstdint>

namespace KestoThumbnailer {

/// One command of a `IWorkerThreadManager`. A copy has a payload of its own.
struct THUMB_THREADCMD {
    /// What to do, which the user of the queue decides. 0 is no command; -1 is kept for the queue itself.
    std::int32_t kind = 0;

    /// What to do it with. The queue never looks into it; may be empty.
    boost::any data;

    /// Stays with the command.
    std::uint64_t tag = 0;
};

} // namespace KestoThumbnailer
