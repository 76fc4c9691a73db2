#include "backends/storage/CompoundFiles.h"

#include <cstdint>
#include <cstring>
#include <fstream>
#include <iterator>

namespace StorageBackend {

std::string pattern(std::size_t size, unsigned seed) {
    std::string bytes(size + sizeof(std::uint32_t), '\0');
    std::uint32_t state = seed;
    for (std::size_t place = 0; place < size; place += sizeof state) {
        state = state * 1664525U + 1013904223U;
        const std::uint32_t noise = state ^ state >> 13U;
        std::memcpy(bytes.data() + place, &noise, sizeof noise);
    }
    bytes.resize(size);
    return bytes;
}

HRESULT openResult(const std::string& path, StoragePtr& storage) {
    void* object = nullptr;
    const HRESULT result = StgOpenStorageEx(wide(path).c_str(), STGM_READ | STGM_TRANSACTED | STGM_NOSNAPSHOT,
                                            STGFMT_ANY, 0, nullptr, nullptr, IID_IStorage, &object);
    EXPECT_EQ(object == nullptr, FAILED(result));
    storage.reset(static_cast<IStorage*>(object));
    return result;
}

StoragePtr openStorage(const std::string& path) {
    StoragePtr storage;
    EXPECT_EQ(openResult(path, storage), S_OK) << path;
    return storage;
}

StoragePtr createStorage(const std::string& path, ULONG sectorSize) {
    STGOPTIONS options = {1, 0, sectorSize};
    void* object = nullptr;
    EXPECT_EQ(StgCreateStorageEx(wide(path).c_str(), forWriting, STGFMT_DOCFILE, 0, &options, nullptr,
                                 IID_IStorage, &object),
              S_OK);
    return StoragePtr(static_cast<IStorage*>(object));
}

StreamPtr createStream(IStorage& storage, const std::wstring& name) {
    IStream* stream = nullptr;
    EXPECT_EQ(storage.CreateStream(name.c_str(), forWriting, 0, 0, &stream), S_OK);
    return StreamPtr(stream);
}

void addStream(IStorage& storage, const std::wstring& name, std::string_view content) {
    const StreamPtr stream = createStream(storage, name);
    ULONG written = 0;
    EXPECT_EQ(stream->Write(content.data(), static_cast<ULONG>(content.size()), &written), S_OK);
    EXPECT_EQ(written, content.size());
}

StoragePtr addStorage(IStorage& storage, const std::wstring& name) {
    IStorage* inner = nullptr;
    EXPECT_EQ(storage.CreateStorage(name.c_str(), forWriting, 0, 0, &inner), S_OK);
    return StoragePtr(inner);
}

HRESULT streamResult(IStorage& storage, const std::wstring& name, StreamPtr& stream) {
    IStream* opened = nullptr;
    const HRESULT result = storage.OpenStream(name.c_str(), nullptr, forReading, 0, &opened);
    EXPECT_EQ(opened == nullptr, FAILED(result));
    stream.reset(opened);
    return result;
}

StreamPtr openStream(IStorage& storage, const std::wstring& name) {
    StreamPtr stream;
    EXPECT_EQ(streamResult(storage, name, stream), S_OK);
    return stream;
}

std::string readOn(IStream& stream, ULONG count) {
    std::string bytes(count, '\0');
    ULONG got = 0;
    EXPECT_EQ(stream.Read(bytes.data(), count, &got), S_OK);
    bytes.resize(got);
    return bytes;
}

std::string contentOf(IStorage& storage, const std::wstring& name) {
    const StreamPtr stream = openStream(storage, name);
    STATSTG status = {};
    if (!stream || FAILED(stream->Stat(&status, STATFLAG_NONAME)))
        return "cannot be opened";
    std::string bytes = readOn(*stream, static_cast<ULONG>(status.cbSize.QuadPart));
    EXPECT_EQ(bytes.size(), status.cbSize.QuadPart);
    EXPECT_EQ(readOn(*stream, 1), "");
    return bytes;
}

std::vector<std::wstring> namesIn(IStorage& storage) {
    IEnumSTATSTG* opened = nullptr;
    EXPECT_EQ(storage.EnumElements(0, nullptr, 0, &opened), S_OK);
    const std::unique_ptr<IEnumSTATSTG, Releaser> elements(opened);
    std::vector<std::wstring> names;
    for (STATSTG status = {}; elements->Next(1, &status, nullptr) == S_OK;) {
        names.emplace_back(status.pwcsName);
        CoTaskMemFree(status.pwcsName);
    }
    return names;
}

HRESULT resultOfReadingAll(const std::string& path) {
    StoragePtr storage;
    if (const HRESULT result = openResult(path, storage); FAILED(result))
        return result;
    std::vector<char> buffer(100'000);
    for (const std::wstring& name : namesIn(*storage)) {
        StreamPtr stream;
        if (const HRESULT result = streamResult(*storage, name, stream); FAILED(result))
            return result;
        for (ULONG got = 1; got > 0;) {
            const HRESULT result = stream->Read(buffer.data(), static_cast<ULONG>(buffer.size()), &got);
            if (FAILED(result))
                return result;
        }
    }
    return S_OK;
}

std::string fileContent(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

} // namespace StorageBackend
