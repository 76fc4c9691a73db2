#include "system/Environment.h"

#include <charconv>
#include <cstdlib>
#include <cstring>

namespace SystemBackend {

std::int64_t positiveFromEnvironment(const char* name, std::int64_t otherwise) {
    const char* text = std::getenv(name); // NOLINT(concurrency-mt-unsafe): nobody sets it
    if (!text)
        return otherwise;
    std::int64_t value = 0;
    const char* end = text + std::strlen(text);
    const auto [rest, error] = std::from_chars(text, end, value);
    return error == std::errc{} && rest == end && value > 0 ? value : otherwise;
}

} // namespace SystemBackend
