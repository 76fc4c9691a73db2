#pragma once

#include "engine/Remux.h"

#include "system/AtomicFile.h"
#include "system/PathResolver.h"

#include <string>

namespace MOSK {

/// A file that appears when it is finished.
class FileTarget : public EngineBackend::IByteTarget {
public:
    explicit FileTarget(const std::string& path)
        : file(SystemBackend::resolvePathForWriting(path), SystemBackend::AtomicFile::Writing::AtPlaces) {}

    bool writeAt(std::int64_t place, std::span<const std::byte> bytes) override {
        return file.writeAt(place, bytes);
    }
    bool readAt(std::int64_t place, std::span<std::byte> into) override { return file.readAt(place, into); }

    bool good() const { return file.good(); }
    /// The errno of the first failure.
    int error() const { return file.error(); }
    bool commit() { return file.commit(); }

private:
    SystemBackend::AtomicFile file;
};

} // namespace MOSK
