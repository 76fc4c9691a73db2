#pragma once

#include "inspection/source/DSExceptions.h"
#include "inspection/source/IStreamReader.h"

#include <cstring>
#include <string>
#include <utility>

/// A file that stands in memory, whatever path is opened.
class MemoryReader : public IStreamReader {
public:
    explicit MemoryReader(std::string content)
        : bytes(std::move(content)) {}

    void open(const std::wstring& /*path*/) override { place = 0; }
    void read(void* buffer, std::uint64_t count) override {
        if (place > bytes.size() || count > bytes.size() - place)
            throw MP4ParseException();
        std::memcpy(buffer, bytes.data() + place, count);
        place += count;
    }
    std::uint64_t size() override { return bytes.size(); }
    void seek(std::uint64_t position) override { place = position; }
    std::uint64_t tell() override { return place; }

private:
    std::string bytes;
    std::uint64_t place = 0;
};
