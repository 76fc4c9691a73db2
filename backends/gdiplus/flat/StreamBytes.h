#pragma once

#include "gdiplus/LoadError.h"

#include <cstddef>
#include <vector>

class IStream;

namespace GdiplusBackend {

/// All bytes of a stream from its start on; `GenericError` when it can't be read to its end.
Result<std::vector<std::byte>> bytesOf(IStream& stream);

} // namespace GdiplusBackend
