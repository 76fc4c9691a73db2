#include "gdiplus/codecs/tiffdecoder/TiffHandle.h"

#include "system/PixelBudget.h"

#include <tiffio.h>

#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstdio>
#include <limits>
#include <new>

namespace GdiplusBackend {

namespace {

struct OptionsDeleter {
    void operator()(TIFFOpenOptions* options) const { TIFFOpenOptionsFree(options); }
};

} // namespace

std::uint64_t mostTiffBytesAtOnce() {
    constexpr std::uint64_t bytesPerPixel = 4;
    constexpr auto most = static_cast<std::uint64_t>(std::numeric_limits<tmsize_t>::max());
    const auto budget = static_cast<std::uint64_t>(SystemBackend::pixelBudget());
    return std::min(budget, most / bytesPerPixel) * bytesPerPixel;
}

struct TiffHandle::Callbacks {
    static TiffHandle& self(void* handle) { return *static_cast<TiffHandle*>(handle); }

    static tmsize_t read(thandle_t handle, void* out, tmsize_t count) {
        const std::span bytes(static_cast<std::byte*>(out), static_cast<std::size_t>(count));
        const std::size_t got = self(handle).cursor.read(bytes);
        self(handle).sawEnd |= got < bytes.size();
        return static_cast<tmsize_t>(got);
    }

    static tmsize_t refuseToWrite(thandle_t /*handle*/, void* /*bytes*/, tmsize_t /*count*/) { return -1; }

    static toff_t seek(thandle_t handle, toff_t offset, int whence) {
        ByteCursor& cursor = self(handle).cursor;
        const std::uint64_t base = whence == SEEK_CUR   ? cursor.position()
                                   : whence == SEEK_END ? cursor.size()
                                                        : 0;
        cursor.seek(base + offset);
        return cursor.position();
    }

    static toff_t size(thandle_t handle) { return self(handle).source->size(); }
    static int close(thandle_t /*handle*/) { return 0; }
    static int refuseToMap(thandle_t /*handle*/, void** /*base*/, toff_t* /*bytes*/) { return 0; }
    static void unmap(thandle_t /*handle*/, void* /*base*/, toff_t /*bytes*/) {}

    static int keepError(TIFF* /*file*/, void* handle, const char* module, const char* format,
                         va_list arguments) {
        std::array<char, 256> text = {};
        (void)std::vsnprintf(text.data(), text.size(), format, arguments); // a long message is cut
        std::string& message = self(handle).firstMessage;
        if (message.empty())
            message = std::string(module ? module : "TIFF") + ": " + text.data();
        return 1;
    }

    static int ignoreWarning(TIFF* /*file*/, void* /*handle*/, const char* /*module*/, const char* /*format*/,
                             va_list /*arguments*/) {
        return 1;
    }
};

TiffHandle::TiffHandle(std::shared_ptr<const ByteSource> bytes)
    : source(std::move(bytes))
    , cursor(*source) {}

TiffHandle::~TiffHandle() {
    if (file)
        TIFFClose(file);
}

Result<std::unique_ptr<TiffHandle>> TiffHandle::open(std::shared_ptr<const ByteSource> source) {
    std::unique_ptr<TiffHandle> handle(new TiffHandle(std::move(source)));
    const std::unique_ptr<TIFFOpenOptions, OptionsDeleter> options(TIFFOpenOptionsAlloc());
    if (!options)
        throw std::bad_alloc();
    TIFFOpenOptionsSetMaxSingleMemAlloc(options.get(), static_cast<tmsize_t>(mostTiffBytesAtOnce()));
    TIFFOpenOptionsSetErrorHandlerExtR(options.get(), Callbacks::keepError, handle.get());
    TIFFOpenOptionsSetWarningHandlerExtR(options.get(), Callbacks::ignoreWarning, handle.get());
    // m: read, do not map; O: places of strips and tiles are read when they are asked for.
    handle->file = TIFFClientOpenExt("TIFF", "rmO", handle.get(), Callbacks::read, Callbacks::refuseToWrite,
                                     Callbacks::seek, Callbacks::close, Callbacks::size,
                                     Callbacks::refuseToMap, Callbacks::unmap, options.get());
    if (!handle->file)
        return handle->failure("the first directory of a TIFF file can't be read");
    if (const auto complete = handle->checkComplete(); !complete)
        return tl::unexpected(complete.error());
    return handle;
}

tl::unexpected<LoadError> TiffHandle::failure(const char* fallback) const {
    std::string message = firstMessage.empty() ? fallback : firstMessage;
    return sawEnd ? truncated(std::move(message)) : damaged(std::move(message));
}

Result<void> TiffHandle::checkComplete() const {
    if (sawEnd)
        return truncated("the TIFF file ends before all that its directory names");
    return {};
}

} // namespace GdiplusBackend
