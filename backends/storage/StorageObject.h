#pragma once

#include "storage/ComObject.h"

#include "platform/StructuredStorage.h"

namespace StorageBackend {

/// A storage without what no caller needs, see `IStorage`.
class StorageObject : public ComObject<IStorage> {
public:
    StorageObject()
        : ComObject(IID_IStorage) {}

    HRESULT CopyTo(DWORD, const IID*, SNB, IStorage*) override { return E_NOTIMPL; }
    HRESULT MoveElementTo(const OLECHAR*, IStorage*, const OLECHAR*, DWORD) override { return E_NOTIMPL; }
    HRESULT Revert() override { return E_NOTIMPL; }
    HRESULT DestroyElement(const OLECHAR*) override { return E_NOTIMPL; }
    HRESULT RenameElement(const OLECHAR*, const OLECHAR*) override { return E_NOTIMPL; }
    HRESULT SetElementTimes(const OLECHAR*, const FILETIME*, const FILETIME*, const FILETIME*) override {
        return E_NOTIMPL;
    }
    HRESULT SetClass(const CLSID&) override { return E_NOTIMPL; }
    HRESULT SetStateBits(DWORD, DWORD) override { return E_NOTIMPL; }
};

} // namespace StorageBackend
