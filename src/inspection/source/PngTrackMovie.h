#pragma once

#include <cstdint>
#include <string>

/// 1 when the path is a `.mov` file with a video track of PNG pictures, else 0. Reads the file's headers.
std::uint32_t HasPngVideoTrack(const std::wstring& path);

/// The same, but the first answer for a path stays for the life of the process, also when the file changes.
/// Any thread; two that ask for a new path at once both read it, and the first to finish tells.
std::uint32_t IsPngTrackMovie(const std::wstring& path);
