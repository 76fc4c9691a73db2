#include "pack/CompoundFile.h"

#include "Paths.h"

#include <fmt/format.h>

#include <vector>

namespace KestoHost {

namespace {

constexpr DWORD modeOfFile = STGM_CREATE | STGM_READWRITE | STGM_SHARE_EXCLUSIVE;
constexpr DWORD modeOfStream = STGM_CREATE | STGM_WRITE | STGM_SHARE_EXCLUSIVE;
constexpr std::size_t bytesAtOnce = std::size_t{1} << 20;

/// Sectors of 512 bytes, which every reader of such files knows, but not all in files of 2 GiB or more.
STGOPTIONS optionsFor(std::uint64_t bytes) {
    constexpr std::uint64_t mostInSmallSectors = 2'000'000'000; // leaves room for the tables
    return {.usVersion = 1, .reserved = 0, .ulSectorSize = bytes < mostInSmallSectors ? 512U : 4096U};
}

std::string whyFailed(const std::string& output, HRESULT result) {
    if (std::string why = whyNotWritable(output); !why.empty())
        return why;
    switch (result) {
    case STG_E_ACCESSDENIED:
        return "it is no regular file, or may not be written";
    case STG_E_MEDIUMFULL:
        return "there is no room left for it";
    case STG_E_INSUFFICIENTMEMORY:
        return "there is not enough memory";
    default:
        return fmt::format("the result is {:#010x}", static_cast<std::uint32_t>(result));
    }
}

} // namespace

CompoundFile::CompoundFile(const std::string& path, std::uint64_t bytes)
    : output(path) {
    STGOPTIONS options = optionsFor(bytes);
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

std::optional<std::uint64_t> CompoundFile::addFile(const std::string& name, InputFile& file) {
    const StreamPtr stream = addStream(name);
    if (!stream)
        return std::nullopt;
    std::vector<char> bytes(bytesAtOnce);
    std::uint64_t total = 0;
    while (const std::size_t count = file.read(bytes)) {
        if (!check(stream->Write(bytes.data(), static_cast<ULONG>(count), nullptr)))
            return std::nullopt;
        total += count;
    }
    if (file.failure()) {
        firstFailure = file.failure();
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
    firstFailure = Failure{"not-written",
                           fmt::format("\"{}\" can't be written: {}.", output, whyFailed(output, result))};
    return false;
}

} // namespace KestoHost
