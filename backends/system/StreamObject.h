#pragma once

#include "platform/Stream.h"

#include <atomic>

namespace SystemBackend {

/// What streams do alike: the count of users, the place, and copying. It cannot be written to unless the
/// derived class says how.
class KESTO_EXPORT StreamObject : public IStream {
public:
    StreamObject(const StreamObject&) = delete;
    StreamObject& operator=(const StreamObject&) = delete;

    HRESULT QueryInterface(const IID& riid, void** object) override;
    ULONG AddRef() override;
    ULONG Release() override;

    HRESULT Write(const void* buffer, ULONG count, ULONG* bytesWritten) override;
    HRESULT Seek(LARGE_INTEGER move, DWORD origin, ULARGE_INTEGER* newPlace) override;
    HRESULT SetSize(ULARGE_INTEGER size) override;
    HRESULT CopyTo(IStream* destination, ULARGE_INTEGER count, ULARGE_INTEGER* bytesRead,
                   ULARGE_INTEGER* bytesWritten) override;
    /// Nothing is held back that could be committed or reverted.
    HRESULT Commit(DWORD flags) override;
    HRESULT Revert() override;
    HRESULT LockRegion(ULARGE_INTEGER offset, ULARGE_INTEGER count, DWORD lockType) override;
    HRESULT UnlockRegion(ULARGE_INTEGER offset, ULARGE_INTEGER count, DWORD lockType) override;

protected:
    explicit StreamObject(UINT64 startPlace = 0)
        : place(startPlace) {}
    virtual ~StreamObject() = default;

    virtual UINT64 length() const = 0;

    UINT64 place; ///< at most the greatest signed number

private:
    std::atomic<ULONG> users{1}; // nothing else hangs on the count, so it needs no lock
};

} // namespace SystemBackend
