#pragma once

#include "platform/GdiplusTypes.h"

#include <tl/expected.hpp>

#include <string>

namespace GdiplusBackend {

/// Why a picture could not be read or written. Of two statuses that fit choose the one that tells the user
/// more: `Aborted` for a file that ends too early before `GenericError` for damage.
struct LoadError {
    Gdiplus::Status status = Gdiplus::GenericError;
    std::string message;
};

template <typename T>
using Result = tl::expected<T, LoadError>;

inline tl::unexpected<LoadError> truncated(std::string message) {
    return tl::unexpected(LoadError{Gdiplus::Aborted, std::move(message)});
}
inline tl::unexpected<LoadError> damaged(std::string message) {
    return tl::unexpected(LoadError{Gdiplus::GenericError, std::move(message)});
}
inline tl::unexpected<LoadError> tooLarge(std::string message) {
    return tl::unexpected(LoadError{Gdiplus::OutOfMemory, std::move(message)});
}

} // namespace GdiplusBackend
