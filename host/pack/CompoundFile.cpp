#include "pack/CompoundFile.h"

#include "Paths.h"
#include "ThumbnailRequest.h"

#include <fmt/format.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <system_error>
#include <vector>

namespace KestoHost {

namespace {

constexpr DWORD modeOfFile = STGM_CREATE | STGM_READWRITE | STGM_SHARE_EXCLUSIVE;
constexpr DWORD modeOfStream = STGM_CREATE | STGM_WRITE | STGM_SHARE_EXCLUSIVE;
constexpr std::size_t bytesAtOnce = std::size_t{1} << 20;

/// Sectors of 512 bytes, which every reader of such files knows, hold streams of less than 2 GiB.
STGOPTIONS optionsFor(std::uintmax_t largestStream) {
    constexpr std::uintmax_t mostInSmallSectors = std::uintmax_t{1} << 31;
    return {.usVersion = 1, .reserved = 0, .ulSectorSize = largestStream < mostInSmallSectors ? 512U : 4096U};
}

} // namespace

CompoundFile::CompoundFile(const std::string& path, std::uintmax_t largestStream)
    : output(path) {
    STGOPTIONS options = optionsFor(largestStream);
    void* made = nullptr;
    if (check(StgCreateStorageEx(wideFromUtf8(path)->c_str(), modeOfFile, STGFMT_DOCFILE, 0, &options,
                                 nullptr, IID_IStorage, &made)))
        root.reset(static_cast<IStorage*>(made));
}

CompoundFile::StreamPtr CompoundFile::addStream(const std::string& name) {
    IStream* made = nullptr;
    if (firstFailure || !check(root->CreateStream(wideFromUtf8(name)->c_str(), modeOfStream, 0, 0, &made)))
        return nullptr;
    return StreamPtr(made);
}

std::optional<std::uint64_t> CompoundFile::addFile(const std::string& name, const std::string& file) {
    const StreamPtr stream = addStream(name);
    if (!stream)
        return std::nullopt;
    std::error_code error; // what can't be asked for is not regular
    if (std::filesystem::exists(file, error) && !std::filesystem::is_regular_file(file, error)) {
        firstFailure = Failure{"unreadable", fmt::format("\"{}\" is not a regular file.", file)};
        return std::nullopt;
    }
    errno = 0;
    std::ifstream in(file, std::ios::binary);
    std::vector<char> bytes(bytesAtOnce);
    std::uint64_t total = 0;
    while (in.read(bytes.data(), static_cast<std::streamsize>(bytes.size())) || in.gcount() > 0) {
        if (!check(stream->Write(bytes.data(), static_cast<ULONG>(in.gcount()), nullptr)))
            return std::nullopt;
        total += static_cast<std::uint64_t>(in.gcount());
    }
    if (!in.eof()) {
        firstFailure = Failure{"unreadable", fmt::format("\"{}\" can't be read: {}.", file,
                                                         std::generic_category().message(errno))};
        return std::nullopt;
    }
    return total;
}

bool CompoundFile::addText(const std::string& name, const std::string& text) {
    const StreamPtr stream = addStream(name);
    return stream && check(stream->Write(text.data(), static_cast<ULONG>(text.size()), nullptr));
}

bool CompoundFile::commit() {
    return !firstFailure && check(root->Commit(STGC_DEFAULT));
}

bool CompoundFile::check(HRESULT result) {
    if (result >= 0)
        return true;
    firstFailure = unwritten(output);
    firstFailure->message += fmt::format(" (result {:#010x})", static_cast<std::uint32_t>(result));
    return false;
}

} // namespace KestoHost
