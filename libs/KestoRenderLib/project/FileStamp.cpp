#include "KestoRenderLib/project/FileStamp.h"

#include "system/PathResolver.h"

#include <sys/stat.h>

namespace KestoRenderLib {

FileStamp stampOf(const std::string& path) {
    struct stat status = {};
    if (::stat(SystemBackend::resolvePath(path).c_str(), &status) != 0)
        return {};
    return {.device = status.st_dev,
            .number = status.st_ino,
            .bytes = status.st_size,
            .changedSeconds = status.st_mtim.tv_sec,
            .changedNanoseconds = status.st_mtim.tv_nsec};
}

} // namespace KestoRenderLib
