#pragma once

#include "backends/system/TempFolder.h"
#include "platform/StructuredStorage.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace StorageBackend {

struct Releaser {
    void operator()(IUnknown* object) const { object->Release(); }
};
using StoragePtr = std::unique_ptr<IStorage, Releaser>;
using StreamPtr = std::unique_ptr<IStream, Releaser>;

constexpr DWORD forReading = STGM_READ | STGM_SHARE_EXCLUSIVE;
constexpr DWORD forWriting = STGM_WRITE | STGM_CREATE | STGM_SHARE_EXCLUSIVE;

inline std::wstring wide(const std::string& ascii) {
    return {ascii.begin(), ascii.end()};
}

/// Bytes that tell where they lie.
std::string pattern(std::size_t size, unsigned seed = 1);

HRESULT openResult(const std::string& path, StoragePtr& storage);
/// Fails the test without one.
StoragePtr openStorage(const std::string& path);
StoragePtr createStorage(const std::string& path, ULONG sectorSize = 512);

StreamPtr createStream(IStorage& storage, const std::wstring& name);
void addStream(IStorage& storage, const std::wstring& name, std::string_view content);
StoragePtr addStorage(IStorage& storage, const std::wstring& name);

HRESULT streamResult(IStorage& storage, const std::wstring& name, StreamPtr& stream);
StreamPtr openStream(IStorage& storage, const std::wstring& name);
std::string readOn(IStream& stream, ULONG count);
/// To its end, in one piece.
std::string contentOf(IStorage& storage, const std::wstring& name);
std::vector<std::wstring> namesIn(IStorage& storage);

/// What opening it and reading all streams of its root came to: the first failure.
HRESULT resultOfReadingAll(const std::string& path);

std::string fileContent(const std::string& path);

} // namespace StorageBackend
