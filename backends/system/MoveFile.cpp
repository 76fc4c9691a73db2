#include "platform/System.h"

#include "system/AtomicFile.h"
#include "system/FileDescriptor.h"
#include "system/PathResolver.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <span>
#include <string>

namespace SystemBackend {

namespace {

ssize_t readSome(int file, std::span<std::byte> buffer) {
    ssize_t count = 0;
    do
        count = ::read(file, buffer.data(), buffer.size());
    while (count < 0 && errno == EINTR);
    return count;
}

bool copyFile(const std::string& from, const std::string& to) {
    const FileDescriptor source(::open(from.c_str(), O_RDONLY | O_CLOEXEC));
    if (!source.isOpen())
        return false;
    AtomicFile target(to);
    std::array<std::byte, 65536> buffer;
    ssize_t count = 0;
    while ((count = readSome(source.get(), buffer)) > 0)
        if (!target.write(std::span(buffer).first(static_cast<std::size_t>(count))))
            return false;
    return count == 0 && target.commit();
}

bool moveFile(const std::string& from, const std::string& to) {
    if (::rename(from.c_str(), to.c_str()) == 0)
        return true;
    if (errno != EXDEV || !copyFile(from, to))
        return false;
    ::unlink(from.c_str()); // a file that can't be removed is left where it was, which is success
    return true;
}

} // namespace

} // namespace SystemBackend

extern "C" {

BOOL MoveFileExW(const WCHAR* from, const WCHAR* to, DWORD flags) {
    if (!from || !to || flags != (MOVEFILE_REPLACE_EXISTING | MOVEFILE_COPY_ALLOWED))
        return FALSE;
    const std::string source = SystemBackend::resolvePath(SystemBackend::toUtf8(from));
    const std::string target = SystemBackend::resolvePathForWriting(SystemBackend::toUtf8(to));
    return SystemBackend::moveFile(source, target) ? TRUE : FALSE;
}

} // extern "C"
