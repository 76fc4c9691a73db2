#include "JsonLines.h"

#include <cerrno>
#include <cstdio>

namespace KestoHost {

void JsonLines::print(const std::string& object) {
    const MutexLock held(lock);
    if (firstError != 0)
        return;
    errno = 0;
    std::fputs((object + '\n').c_str(), stdout);
    if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0)
        firstError = errno != 0 ? errno : EIO;
}

} // namespace KestoHost
