#pragma once

#include "storage/CompoundWriter.h"

namespace StorageBackend {

/// The directory of a new file, and the streams that its small ones lie in.
struct NewDirectory {
    std::vector<CompoundFormat::DirectoryEntry> entries; ///< the root first; its stream is not placed yet
    std::vector<std::byte> miniStream;
    std::vector<std::uint32_t> miniTable;
};

NewDirectory buildDirectory(const NewElement& root);

} // namespace StorageBackend
