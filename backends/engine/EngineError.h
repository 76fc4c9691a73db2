#pragma once

#include <tl/expected.hpp>

#include <string>

namespace EngineBackend {

/// Of two kinds that fit choose the one that tells the user more: `TooLarge` before `Damaged`.
enum class ErrorKind {
    Unavailable,  ///< the module or its libraries are not installed
    Unreadable,   ///< missing, no regular file, or not to be opened
    NotMedia,     ///< no container that is known
    NoSuchStream, ///< no stream of that number or kind
    Unsupported,  ///< nothing here decodes this
    Damaged,      ///< nothing could be decoded where something was promised
    TooLarge,     ///< more pixels than the budget, or than there is memory for
    OutOfTime,    ///< the time limit of a call passed
    Unwritable,   ///< the target takes no more
};

/// `message` names the file, the place and what was expected, for people.
struct Error {
    ErrorKind kind = ErrorKind::Damaged;
    std::string message;
};

template <typename T>
using Result = tl::expected<T, Error>;

inline tl::unexpected<Error> failure(ErrorKind kind, std::string message) {
    return tl::unexpected(Error{kind, std::move(message)});
}

} // namespace EngineBackend
