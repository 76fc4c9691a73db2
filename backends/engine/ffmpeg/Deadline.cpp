#include "engine/ffmpeg/Deadline.h"

#include "system/Environment.h"

#include <algorithm>

namespace EngineBackend {

namespace {

constexpr std::int64_t defaultLimitInMs = 30'000;
constexpr std::int64_t longestLimitInMs = 1'000'000'000;

} // namespace

Deadline::Deadline()
    : allowed(std::min(SystemBackend::positiveFromEnvironment("KESTO_VIDEO_TIME_LIMIT_MS", defaultLimitInMs),
                       longestLimitInMs)) {
    begin();
}

} // namespace EngineBackend
