#pragma once

#include "storage/CompoundFile.h"

#include "system/StreamObject.h"

namespace StorageBackend {

/// A stream that is read. Small reads near each other cost one access to the file; a small stream is in
/// memory from the start. The chain of a large one is found out on the way.
Result<IStream*> openStream(std::shared_ptr<CompoundFile> file, const Element& element);

} // namespace StorageBackend
