#pragma once

#include "gdiplus/LoadError.h"
#include "gdiplus/codecs/ByteSource.h"

#include <cstdint>
#include <memory>
#include <string>

struct tiff;

namespace GdiplusBackend {

/// Room for the largest picture in one piece: no strip, tile or row may need more.
std::uint64_t mostTiffBytesAtOnce();

/// The first directory of a TIFF file, opened by libtiff over a byte source. Messages stay in the object; the
/// library's global handlers are never called. One thread at a time.
class TiffHandle {
public:
    static Result<std::unique_ptr<TiffHandle>> open(std::shared_ptr<const ByteSource> source);
    ~TiffHandle();
    TiffHandle(const TiffHandle&) = delete;
    TiffHandle& operator=(const TiffHandle&) = delete;

    tiff* get() const { return file; }

    /// What libtiff's latest failure amounts to: `Aborted` once a read has met the end of the file.
    tl::unexpected<LoadError> failure(const char* fallback) const;
    /// `Aborted` if any read has met the end of the file, even if libtiff made do without those bytes.
    Result<void> checkComplete() const;

private:
    struct Callbacks;

    explicit TiffHandle(std::shared_ptr<const ByteSource> bytes);

    std::shared_ptr<const ByteSource> source;
    ByteCursor cursor;
    bool sawEnd = false;
    std::string firstMessage;
    tiff* file = nullptr;
};

} // namespace GdiplusBackend
