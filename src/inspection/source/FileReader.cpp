#include "inspection/source/FileReader.h"

#include "inspection/source/DSExceptions.h"
#include "platform/System.h"

#include <array>
#include <limits>
#include <string_view>

void FileReader::open(const std::wstring& path) {
    if (!file.open(path))
        throw MP4ParseException();
    std::array<char, 8> start{};
    read(start.data(), start.size());
    if (std::string_view(start.data() + 4, 4) != "ftyp")
        throw MP4ParseException();
    seek(0);
}

void FileReader::read(void* buffer, std::uint64_t count) {
    // One call reads at most what 32 bits can count.
    if (count > std::numeric_limits<DWORD>::max())
        throw MP4ParseException();
    if (file.read(buffer, static_cast<DWORD>(count)) != static_cast<DWORD>(count))
        throw MP4ParseException();
}

std::uint64_t FileReader::size() {
    const std::uint64_t position = tell();
    const std::uint64_t end = move(0, FILE_END);
    seek(position);
    return end;
}

void FileReader::seek(std::uint64_t position) {
    // The upper half of positions is negative to the platform, which refuses it.
    move(static_cast<std::int64_t>(position), FILE_BEGIN);
}

std::uint64_t FileReader::tell() {
    return move(0, FILE_CURRENT);
}

std::uint64_t FileReader::move(std::int64_t distance, DWORD method) {
    const auto position = file.seek(distance, method);
    if (!position)
        throw MP4ParseException();
    return *position;
}
