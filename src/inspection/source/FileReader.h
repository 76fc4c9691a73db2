#pragma once

#include "inspection/source/FileHandle.h"
#include "inspection/source/IStreamReader.h"

/// Reads a file of the file system. It opens files as they are now: reading one as a file transaction would
/// leave it is not supported, since nobody asks for it.
class FileReader : public IStreamReader {
public:
    /// Only a file whose first atom is `ftyp` opens; a QuickTime file that begins with anything else counts
    /// as no MP4 file.
    void open(const std::wstring& path) override;
    void read(void* buffer, std::uint64_t count) override;
    std::uint64_t size() override;
    void seek(std::uint64_t position) override;
    std::uint64_t tell() override;

private:
    std::uint64_t move(std::int64_t distance, DWORD method);

    FileHandle file;
};
