#include "PageRasterLib/poppler/TimeLimit.h"

#include <charconv>
#include <cstdlib>
#include <cstring>

namespace PageRasterLib {

namespace {

constexpr std::chrono::milliseconds defaultLimit{30'000};

std::chrono::milliseconds limitFromEnvironment() {
    const char* text =
        std::getenv("KESTO_PDF_TIME_LIMIT_MS"); // NOLINT(concurrency-mt-unsafe): nobody sets it
    if (!text)
        return defaultLimit;
    int value = 0;
    const char* end = text + std::strlen(text);
    const auto [rest, error] = std::from_chars(text, end, value);
    return error == std::errc{} && rest == end && value > 0 ? std::chrono::milliseconds(value) : defaultLimit;
}

} // namespace

TimeLimit::TimeLimit()
    : allowed(limitFromEnvironment())
    , end(Clock::now() + allowed) {}

bool TimeLimit::begin() {
    end = Clock::now() + allowed;
    return !passed;
}

bool TimeLimit::isPassed() const {
    passed = passed || Clock::now() >= end;
    return passed;
}

} // namespace PageRasterLib
