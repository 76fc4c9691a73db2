#pragma once

#include "platform/GdiplusTypes.h"

#include <cstddef>
#include <span>
#include <vector>

namespace GdiplusBackend {

/// One tag of a picture's metadata.
struct PropertyEntry {
    PROPID id;
    WORD type;                    ///< `PropertyTagType...`
    std::vector<std::byte> value; ///< in the machine's byte order; ASCII with its terminator
};

/// The tags of an Exif block (CIPA DC-008) that starts with its TIFF header, in the file's order. What can't
/// be read is left out; an empty or broken block gives an empty list.
std::vector<PropertyEntry> propertiesFromExif(std::span<const std::byte> exif);

} // namespace GdiplusBackend
