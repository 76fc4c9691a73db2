#pragma once

#include "storage/CompoundFile.h"

namespace StorageBackend {

/// Fills `status` as `Stat` does, with a name of its own unless `flags` is `STATFLAG_NONAME`.
HRESULT describe(const Element& element, DWORD flags, STATSTG& status);

} // namespace StorageBackend
