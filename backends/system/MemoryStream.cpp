#include "system/StreamObject.h"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <new>
#include <stdexcept>
#include <utility>
#include <vector>

namespace SystemBackend {

namespace {

using SharedBytes = std::shared_ptr<std::vector<BYTE>>;

class MemoryStream final : public StreamObject {
public:
    explicit MemoryStream(SharedBytes content, UINT64 startPlace = 0)
        : StreamObject(startPlace)
        , bytes(std::move(content)) {}

    HRESULT Read(void* buffer, ULONG count, ULONG* bytesRead) override;
    HRESULT Write(const void* buffer, ULONG count, ULONG* bytesWritten) override;
    HRESULT SetSize(ULARGE_INTEGER size) override;
    HRESULT Stat(STATSTG* status, DWORD flags) override;
    HRESULT Clone(IStream** copy) override;

private:
    UINT64 length() const override { return bytes->size(); }

    SharedBytes bytes; // clones share them
};

HRESULT MemoryStream::Read(void* buffer, ULONG count, ULONG* bytesRead) {
    if (bytesRead)
        *bytesRead = 0;
    if (!buffer)
        return STG_E_INVALIDPOINTER;
    if (place >= bytes->size())
        return S_OK;
    const auto got = static_cast<ULONG>(std::min<UINT64>(count, bytes->size() - place));
    std::copy_n(bytes->data() + place, got, static_cast<BYTE*>(buffer));
    place += got;
    if (bytesRead)
        *bytesRead = got;
    return S_OK;
}

HRESULT MemoryStream::Write(const void* buffer, ULONG count, ULONG* bytesWritten) {
    if (bytesWritten)
        *bytesWritten = 0;
    if (!buffer)
        return STG_E_INVALIDPOINTER;
    if (count > 0 && place + count > bytes->size()) {
        if (const HRESULT grown = SetSize({place + count}); FAILED(grown))
            return grown;
    }
    std::copy_n(static_cast<const BYTE*>(buffer), count, bytes->data() + (count > 0 ? place : 0));
    place += count;
    if (bytesWritten)
        *bytesWritten = count;
    return S_OK;
}

HRESULT MemoryStream::SetSize(ULARGE_INTEGER size) {
    try {
        bytes->resize(size.QuadPart);
        return S_OK;
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    } catch (const std::length_error&) {
        return E_OUTOFMEMORY;
    }
}

HRESULT MemoryStream::Stat(STATSTG* status, DWORD) {
    if (!status)
        return STG_E_INVALIDPOINTER;
    *status = {};
    status->type = STGTY_STREAM;
    status->cbSize.QuadPart = bytes->size();
    status->grfMode = STGM_READWRITE;
    return S_OK;
}

HRESULT MemoryStream::Clone(IStream** copy) {
    if (!copy)
        return STG_E_INVALIDPOINTER;
    *copy = new (std::nothrow) MemoryStream(bytes, place);
    return *copy ? S_OK : E_OUTOFMEMORY;
}

} // namespace

} // namespace SystemBackend

extern "C" {

IStream* SHCreateMemStream(const BYTE* initial, UINT size) {
    try {
        auto bytes = initial ? std::make_shared<std::vector<BYTE>>(initial, initial + size)
                             : std::make_shared<std::vector<BYTE>>();
        return new SystemBackend::MemoryStream(std::move(bytes));
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

void* CoTaskMemAlloc(std::size_t size) {
    return std::malloc(std::max<std::size_t>(size, 1)); // of no bytes is a block too
}

void CoTaskMemFree(void* memory) {
    std::free(memory);
}

} // extern "C"
