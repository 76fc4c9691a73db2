#include "gdiplus/encoders/SinkWriter.h"

#include <utility>

namespace GdiplusBackend {

namespace {
constexpr std::size_t blockBytes = std::size_t{1} << 16;
}

SinkWriter::SinkWriter(ByteSink& target)
    : sink(&target) {
    gathered.reserve(blockBytes);
}

bool SinkWriter::write(std::span<const std::byte> bytes) noexcept {
    if (gathered.size() + bytes.size() > blockBytes) {
        if (!pass(gathered))
            return false;
        gathered.clear();
    }
    if (bytes.size() >= blockBytes)
        return pass(bytes);
    gathered.insert(gathered.end(), bytes.begin(), bytes.end());
    return !failure && !thrown;
}

Result<void> SinkWriter::finish() {
    if (!pass(gathered))
        return failureOr({});
    gathered.clear();
    return {};
}

tl::unexpected<LoadError> SinkWriter::failureOr(std::string message) {
    if (thrown)
        std::rethrow_exception(thrown);
    if (failure)
        return tl::unexpected(*failure);
    return tl::unexpected(LoadError{Gdiplus::GenericError, std::move(message)});
}

bool SinkWriter::pass(std::span<const std::byte> bytes) noexcept {
    if (failure || thrown)
        return false;
    if (bytes.empty())
        return true;
    try {
        Result<void> written = sink->write(bytes);
        if (!written)
            failure = std::move(written.error());
        return written.has_value();
    } catch (...) {
        thrown = std::current_exception();
        return false;
    }
}

} // namespace GdiplusBackend
