#pragma once

#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <string>

#include <sys/wait.h>

/// Documents that librsvg takes too much for, and what they may leave behind.
namespace HostileSvg {

inline std::string svg(const std::string& content) {
    return "<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 200 100'>" + content + "</svg>";
}

/// Each mask is drawn eight times for each time that the next one is.
inline std::string endless() {
    std::string masks;
    for (int mask = 0; mask < 40; ++mask) {
        masks += "<mask id='m" + std::to_string(mask) + "'>";
        for (int copy = 0; copy < 8; ++copy)
            masks +=
                "<rect width='200' height='100' fill='#fff' mask='url(#m" + std::to_string(mask - 1) + ")'/>";
        masks += "</mask>";
    }
    return svg(masks + "<rect width='200' height='100' mask='url(#m39)'/>");
}

/// More numbers than librsvg 2.54 reads, which then ends its process.
inline std::string deadly() {
    std::string kernel;
    for (int number = 0; number < 50 * 50; ++number)
        kernel += "1 ";
    return svg("<filter id='f'><feConvolveMatrix order='50' kernelMatrix='" + kernel +
               "'/></filter><rect width='200' height='100' filter='url(#f)'/>");
}

/// Documents here end after so many milliseconds. No other thread runs that could read the environment.
class TimeLimit {
public:
    explicit TimeLimit(const char* milliseconds) {
        ::setenv("KESTO_SVG_TIME_LIMIT_MS", milliseconds, 1); // NOLINT(concurrency-mt-unsafe)
    }
    ~TimeLimit() { ::unsetenv("KESTO_SVG_TIME_LIMIT_MS"); } // NOLINT(concurrency-mt-unsafe)
    TimeLimit(const TimeLimit&) = delete;
    TimeLimit& operator=(const TimeLimit&) = delete;
};

inline std::ptrdiff_t openFiles() {
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
}

inline bool hasChildren() {
    return ::waitpid(-1, nullptr, WNOHANG) != -1 || errno != ECHILD;
}

} // namespace HostileSvg
