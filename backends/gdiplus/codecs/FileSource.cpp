#include "gdiplus/codecs/ByteSource.h"

#include "system/PathResolver.h"

#include <fmt/format.h>

#include <cerrno>
#include <string>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace GdiplusBackend {

namespace {

class FileSource : public ByteSource {
public:
    FileSource(int descriptor, std::uint64_t bytes)
        : file(descriptor)
        , length(bytes) {}
    ~FileSource() override { ::close(file); }
    FileSource(const FileSource&) = delete;
    FileSource& operator=(const FileSource&) = delete;

    std::uint64_t size() const override { return length; }

    std::size_t read(std::uint64_t offset, std::span<std::byte> out) const override {
        std::size_t done = 0;
        while (done < out.size()) {
            const ssize_t got =
                ::pread(file, out.data() + done, out.size() - done, static_cast<off_t>(offset + done));
            if (got < 0 && errno == EINTR)
                continue;
            if (got <= 0)
                break;
            done += static_cast<std::size_t>(got);
        }
        return done;
    }

private:
    int file;
    std::uint64_t length;
};

tl::unexpected<LoadError> refusal(Gdiplus::Status status, const std::string& path, const std::string& why) {
    return tl::unexpected(LoadError{status, fmt::format("{}: {}", path, why)});
}

} // namespace

Result<std::shared_ptr<const ByteSource>> openFile(const wchar_t* filename) {
    const std::string path = SystemBackend::resolvePath(SystemBackend::toUtf8(filename));
    if (path.empty())
        return refusal(Gdiplus::InvalidParameter, "", "a file name is expected");
    // Without O_NONBLOCK the open of a pipe would wait for its writer.
    const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (file < 0) {
        const int error = errno;
        const bool missing = error == ENOENT || error == ENOTDIR || error == ENAMETOOLONG;
        return refusal(missing ? Gdiplus::InvalidParameter : Gdiplus::AccessDenied, path,
                       std::generic_category().message(error));
    }
    struct stat status = {};
    if (::fstat(file, &status) != 0 || !S_ISREG(status.st_mode)) {
        ::close(file);
        return refusal(Gdiplus::AccessDenied, path, "not a regular file");
    }
    return std::make_shared<FileSource>(file, static_cast<std::uint64_t>(status.st_size));
}

} // namespace GdiplusBackend
