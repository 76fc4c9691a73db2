#pragma once

#include "gdiplus/codecs/PictureDecoder.h"

#include <cstddef>
#include <cstring>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace GdiplusBackend {

using OpenPicture = Result<std::unique_ptr<PictureDecoder>> (*)(std::shared_ptr<const ByteSource>);

struct CodecEntry {
    const char* name;
    /// Whether a file that starts with `head` (up to `headBytes`, fewer for a short file) is of this kind.
    bool (*recognises)(std::span<const std::byte> head);
    OpenPicture open;
    /// For codecs in modules: whether the module is installed.
    bool (*isPresent)() = nullptr;
};

constexpr std::size_t headBytes = 4096;

/// Opens a picture by its content; the file's name plays no part. `UnknownImageFormat` when no decoder knows
/// it, and for an empty file.
Result<std::unique_ptr<PictureDecoder>> openPicture(std::shared_ptr<const ByteSource> source);

/// Names of the codecs that are built in, and of those whose module is installed; none is loaded.
std::vector<std::string> availableCodecs();

inline bool startsWith(std::span<const std::byte> head, std::string_view signature) {
    return head.size() >= signature.size() &&
           std::memcmp(head.data(), signature.data(), signature.size()) == 0;
}

} // namespace GdiplusBackend
