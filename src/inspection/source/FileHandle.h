#pragma once

#include "platform/WinTypes.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

/// A file that is open for reading, closed with its owner. One thread at a time.
class FileHandle {
public:
    /// Closes what was open before. False when the file can't be opened.
    bool open(const std::wstring& path);

    /// The bytes read by one call, fewer than `count` at the end of the file; none on failure.
    std::optional<DWORD> read(void* buffer, DWORD count);
    /// Moves by `distance` from what `method` says (`FILE_BEGIN` and so on). The new position; none on
    /// failure.
    std::optional<std::uint64_t> seek(std::int64_t distance, DWORD method);

private:
    struct Close {
        void operator()(HANDLE handle) const;
    };

    std::unique_ptr<void, Close> file;
};
