#pragma once

#include "storage/CompoundFile.h"

namespace StorageBackend {

/// The elements of a directory that its trees lead to, each at the index of its entry. `STG_E_DOCFILECORRUPT`
/// for a tree that meets an entry twice or leads to none, and for an entry without a proper name or type.
Result<std::vector<Element>> readDirectoryTree(std::span<const CompoundFormat::DirectoryEntry> entries,
                                               int majorVersion);

} // namespace StorageBackend
