#pragma once

#include "gdiplus/codecs/CodecTable.h"
#include "platform/Export.h"

namespace GdiplusBackend {

/// Decoders that are opened on first need, so that other pictures never wait for their libraries.
enum class CodecModule { Heif, Svg };

/// The codec of a module, which stays loaded. `UnknownImageFormat` when it is not installed or can't be
/// loaded. Any thread.
Result<const CodecEntry*> loadCodecModule(CodecModule which);

/// Whether the module's file is there; nothing is loaded.
bool isCodecModulePresent(CodecModule which);

} // namespace GdiplusBackend

extern "C" {
/// What each codec module exports.
KESTO_EXPORT const GdiplusBackend::CodecEntry* kestoCodec();
}
