#pragma once

#include "engine/ByteSource.h"
#include "engine/EngineError.h"

#include <memory>
#include <string>

namespace EngineBackend {

/// A regular file; folders, pipes and devices are refused and never waited for.
class FileSource : public IByteSource {
public:
    /// `path` is looked up as `platform/System.h` tells.
    static Result<std::unique_ptr<FileSource>> open(const std::string& path);

    ~FileSource() override;
    FileSource(const FileSource&) = delete;
    FileSource& operator=(const FileSource&) = delete;

    std::int64_t read(std::span<std::byte> into) override;
    std::int64_t tell() const override { return place; }
    bool seek(std::int64_t newPlace) override;
    std::int64_t size() const override { return length; }
    bool canSeek() const override { return true; }

private:
    FileSource(int descriptor, std::int64_t bytes)
        : file(descriptor)
        , length(bytes) {}

    int file;
    std::int64_t length;
    std::int64_t place = 0;
};

} // namespace EngineBackend
