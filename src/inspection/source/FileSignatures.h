#pragma once

#include "platform/WinTypes.h"

#include <span>
#include <string_view>

class FileHandle;

/// Bytes at a place of a file: each must equal that of `value` once `mask` was applied to it.
struct SignaturePattern {
    std::int64_t offset; ///< from the start, or from the end when it is negative
    std::uint32_t byteCount;
    std::string_view mask;
    std::string_view value;
};

/// What a file of a media subtype begins with: all patterns match.
struct FileSignature {
    GUID subtype;
    std::span<const SignaturePattern> patterns;
};

/// In the order in which they are tried; a subtype may have several.
std::span<const FileSignature> FileSignatures();

/// False also when the file is too short for a pattern, or a pattern's parts differ in length. Moves the
/// position of the file.
bool MatchesSignature(FileHandle& file, const FileSignature& signature);
