#pragma once

#include "engine/ByteSource.h"

#include <algorithm>
#include <memory>

namespace MOSK {

/// Where the last box ends of which all is there, among those that stand in no other (ISO/IEC 14496-12, 4.2).
/// The source's place changes.
std::int64_t endOfWholeBoxes(EngineBackend::IByteSource& file);

/// A file that ends earlier than it does.
class CutSource : public EngineBackend::IByteSource {
public:
    CutSource(std::unique_ptr<EngineBackend::IByteSource> file, std::int64_t end)
        : source(std::move(file))
        , length(end) {}

    std::int64_t read(std::span<std::byte> into) override {
        const std::int64_t left = std::max<std::int64_t>(length - source->tell(), 0);
        return source->read(into.first(std::min(into.size(), static_cast<std::size_t>(left))));
    }
    std::int64_t tell() const override { return source->tell(); }
    bool seek(std::int64_t place) override { return source->seek(place); }
    std::int64_t size() const override { return length; }
    bool canSeek() const override { return source->canSeek(); }

private:
    std::unique_ptr<EngineBackend::IByteSource> source;
    std::int64_t length;
};

} // namespace MOSK
