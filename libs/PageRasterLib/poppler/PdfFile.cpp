#include "PageRasterLib/poppler/PdfFile.h"

#include <array>
#include <cerrno>
#include <string_view>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace PageRasterLib {

tl::expected<std::shared_ptr<PdfFile>, PdfState> PdfFile::open(const char* path) {
    // Without O_NONBLOCK the open of a pipe would wait for its writer.
    const int descriptor = ::open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (descriptor < 0)
        return tl::unexpected(PdfState::Unreadable);
    auto file = std::make_shared<PdfFile>(descriptor);
    const PdfState state = file->inspect();
    if (state != PdfState::Readable)
        return tl::unexpected(state);
    return file;
}

PdfFile::~PdfFile() {
    ::close(descriptor);
}

PdfState PdfFile::inspect() {
    struct stat status = {};
    if (::fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode))
        return PdfState::Unreadable;
    if (status.st_size == 0)
        return PdfState::Empty;
    length = status.st_size;
    // PDF Reference 1.7, appendix H.3, note 13: readers accept a header anywhere in the first 1024 bytes.
    std::array<char, 1024> start;
    const std::string_view head(start.data(), read(0, start));
    return head.find("%PDF-") == std::string_view::npos ? PdfState::NotAPdf : PdfState::Readable;
}

std::size_t PdfFile::read(Goffset offset, std::span<char> out) const {
    if (offset < 0 || timeLimit.isPassed())
        return 0;
    std::size_t done = 0;
    while (done < out.size()) {
        const ssize_t got =
            ::pread(descriptor, out.data() + done, out.size() - done, offset + static_cast<Goffset>(done));
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0)
            break;
        done += static_cast<std::size_t>(got);
    }
    return done;
}

BaseStream* PdfFileStream::copy() {
    return new PdfFileStream(file, start, limited, length, dict.copy());
}

Stream* PdfFileStream::makeSubStream(Goffset from, bool isLimited, Goffset bytes, Object&& dictionary) {
    return new PdfFileStream(file, from, isLimited, bytes, std::move(dictionary));
}

Goffset PdfFileStream::read(char* out, Goffset count) {
    if (count <= 0)
        return 0;
    const std::size_t got = file->read(position, {out, static_cast<std::size_t>(count)});
    position += static_cast<Goffset>(got);
    return static_cast<Goffset>(got);
}

} // namespace PageRasterLib
