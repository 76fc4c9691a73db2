#pragma once

#include "engine/StreamFacts.h"

#include <cstdint>
#include <vector>

struct AVFormatContext;
struct AVStream;

namespace EngineBackend {

/// What the container's header tells of a stream; its times still count from the file's own zero.
StreamFacts readStreamFacts(const AVFormatContext& container, const AVStream& stream);

/// False when packets must be looked into before a video stream can be decoded and its facts are right.
bool isHeaderComplete(const AVFormatContext& container);

/// For each stream the ticks at which the presentation starts: where the earliest stream of the file starts;
/// for video where it starts itself, if that is less than a tenth of a second later, as it is when an
/// audio encoder's delay or the multiplexer shifts streams against each other.
std::vector<std::int64_t> findOrigins(const AVFormatContext& container);

/// The size at which a picture of `coded` pixels is shown: square pixels, made by enlarging, then turned.
PictureSize displaySizeOf(PictureSize coded, Rational pixelAspect, const Orientation& orientation);

} // namespace EngineBackend
