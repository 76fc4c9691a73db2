#pragma once

#include "platform/Stream.h"

#include <tl/expected.hpp>

#include <new>

namespace StorageBackend {

/// A failed result; which file it was is known to the caller.
template <typename T>
using Result = tl::expected<T, HRESULT>;

constexpr tl::unexpected<HRESULT> corrupt() {
    return tl::unexpected<HRESULT>(STG_E_DOCFILECORRUPT);
}

/// The result for an errno of opening or writing.
HRESULT resultOfErrno(int error);

/// Runs the body of an interface's method; memory that ran out becomes a result.
template <typename Body>
HRESULT guarded(Body body) noexcept {
    try {
        return body();
    } catch (const std::bad_alloc&) {
        return STG_E_INSUFFICIENTMEMORY;
    } catch (...) {
        return E_UNEXPECTED;
    }
}

} // namespace StorageBackend
