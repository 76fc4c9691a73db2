#pragma once

#include "engine/ByteSource.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <utility>

/// A file that stands in memory.
class MemorySource : public EngineBackend::IByteSource {
public:
    explicit MemorySource(std::string content)
        : bytes(std::move(content)) {}

    std::int64_t read(std::span<std::byte> into) override {
        const std::size_t rest = bytes.size() - std::min(bytes.size(), static_cast<std::size_t>(place));
        const std::size_t count = std::min(rest, into.size());
        if (count > 0)
            std::memcpy(into.data(), bytes.data() + place, count);
        place += static_cast<std::int64_t>(count);
        return static_cast<std::int64_t>(count);
    }
    std::int64_t tell() const override { return place; }
    bool seek(std::int64_t newPlace) override {
        if (newPlace < 0 || !canSeek())
            return false;
        place = newPlace;
        return true;
    }
    std::int64_t size() const override { return static_cast<std::int64_t>(bytes.size()); }
    bool canSeek() const override { return true; }

private:
    std::string bytes;
    std::int64_t place = 0;
};
