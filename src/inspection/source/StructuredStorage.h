#pragma once

#include "platform/StructuredStorage.h"

#include <memory>
#include <string>
#include <vector>

namespace NuvraUtl {

/// A compound file that is open for reading, and which of its storages is current. One thread at a time.
class StructuredStorage {
public:
    StructuredStorage() = default;
    virtual ~StructuredStorage();
    StructuredStorage(const StructuredStorage&) = delete;
    StructuredStorage& operator=(const StructuredStorage&) = delete;

    /// 1, with the root as the current storage; 0 for what can't be opened. Closes what was open before.
    int Open(const std::wstring& file);
    /// 1, with a stream of the current storage that the caller releases; 0, with null, without one.
    int OpenStream(IStream** stream, const std::wstring& name);
    /// Appends the names of the current storage's elements.
    void ListElements(std::vector<std::wstring>& names);
    void Close();

    /// Of the latest operation.
    HRESULT LastResult() const { return lastResult; }

private:
    struct Release {
        void operator()(IUnknown* object) const { object->Release(); }
    };

    std::wstring path;
    std::vector<std::unique_ptr<IStorage, Release>> storages; ///< a stack: the last is the current one
    std::shared_ptr<void> companion;                          ///< kept as long as this; nothing sets it
    HRESULT lastResult = S_OK;
};

} // namespace NuvraUtl
