#pragma once

#include "platform/Com.h"

#include <atomic>

namespace StorageBackend {

/// Counts the users of an object with one interface.
template <typename Interface>
class ComObject : public Interface {
public:
    ComObject(const ComObject&) = delete;
    ComObject& operator=(const ComObject&) = delete;

    HRESULT QueryInterface(const IID& riid, void** object) override {
        if (!object)
            return E_POINTER;
        *object = nullptr;
        if (riid != IID_IUnknown && riid != interfaceId)
            return E_NOINTERFACE;
        *object = static_cast<Interface*>(this);
        AddRef();
        return S_OK;
    }
    ULONG AddRef() override { return ++users; }
    ULONG Release() override {
        const ULONG left = --users;
        if (left == 0)
            delete this;
        return left;
    }

protected:
    explicit ComObject(const IID& ownInterface)
        : interfaceId(ownInterface) {}
    virtual ~ComObject() = default;

private:
    IID interfaceId;
    std::atomic<ULONG> users{1}; // nothing else hangs on the count, so it needs no lock
};

} // namespace StorageBackend
