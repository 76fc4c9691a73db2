#pragma once

#include "gdiplus/encoders/PictureEncoder.h"

#include <cstddef>
#include <exception>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace GdiplusBackend {

/// Gathers what an encoder writes in small pieces, and keeps the sink's first failure until the encoder can
/// return it: no error and no exception passes through a C library on the way.
class SinkWriter {
public:
    explicit SinkWriter(ByteSink& target);

    /// False once the sink has failed; nothing more reaches it from then on.
    bool write(std::span<const std::byte> bytes) noexcept;

    /// Hands on what is still gathered. The sink's first error, unchanged; what it threw is thrown here.
    Result<void> finish();

    /// Why an encoder gave up: the sink's error if it failed, else `message` as `GenericError`.
    tl::unexpected<LoadError> failureOr(std::string message);

private:
    bool pass(std::span<const std::byte> bytes) noexcept;

    ByteSink* sink;
    std::vector<std::byte> gathered; // never grows over its first capacity
    std::optional<LoadError> failure;
    std::exception_ptr thrown;
};

} // namespace GdiplusBackend
