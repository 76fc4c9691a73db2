#pragma once

#include "PageRasterLib/poppler/TimeLimit.h"
#include "platform/PageRasterLib.h"

#include <Object.h> // before Stream.h, which lacks what it uses of it
#include <Stream.h>

#include <tl/expected.hpp>

#include <memory>
#include <span>

namespace PageRasterLib {

/// A regular file that begins like a PDF document, held open.
class PdfFile {
public:
    /// Never waits for a pipe. `Unreadable`, `Empty` or `NotAPdf` otherwise.
    static tl::expected<std::shared_ptr<PdfFile>, PdfState> open(const char* path);

    explicit PdfFile(int openDescriptor)
        : descriptor(openDescriptor) {}
    ~PdfFile();
    PdfFile(const PdfFile&) = delete;
    PdfFile& operator=(const PdfFile&) = delete;

    Goffset size() const { return length; }
    /// Fills `out` from `offset`, and gives the number of bytes: short at the end, after an error, and 0 once
    /// the time limit has passed.
    std::size_t read(Goffset offset, std::span<char> out) const;

    TimeLimit timeLimit;

private:
    /// `Readable` for a regular file with a header; sets `length`.
    PdfState inspect();

    int descriptor;
    Goffset length = 0;
};

/// poppler's view of a `PdfFile`. Everything that poppler interprets comes through here, so that the end of
/// the time limit ends its loops as the end of the file would, however deeply nested.
class PdfFileStream : public BaseSeekInputStream {
public:
    PdfFileStream(std::shared_ptr<const PdfFile> source, Goffset from, bool isLimited, Goffset bytes,
                  Object&& dictionary)
        : BaseSeekInputStream(from, isLimited, bytes, std::move(dictionary))
        , file(std::move(source))
        , position(from) {}

    BaseStream* copy() override;
    Stream* makeSubStream(Goffset from, bool isLimited, Goffset bytes, Object&& dictionary) override;

private:
    Goffset currentPos() const override { return position; }
    void setCurrentPos(Goffset offset) override { position = offset; }
    Goffset read(char* out, Goffset count) override;

    std::shared_ptr<const PdfFile> file;
    Goffset position;
};

} // namespace PageRasterLib
