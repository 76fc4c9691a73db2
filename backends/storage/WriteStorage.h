#pragma once

#include "storage/CompoundWriter.h"
#include "storage/StorageObject.h"

namespace StorageBackend {

/// A storage of a new file.
class WriteStorage final : public StorageObject {
public:
    WriteStorage(std::shared_ptr<CompoundWriter> newFile, NewElement& newElement)
        : writer(std::move(newFile))
        , element(&newElement) {}

    HRESULT CreateStream(const OLECHAR* name, DWORD mode, DWORD reserved1, DWORD reserved2,
                         IStream** stream) override;
    HRESULT OpenStream(const OLECHAR* name, void* reserved1, DWORD mode, DWORD reserved2,
                       IStream** stream) override;
    HRESULT CreateStorage(const OLECHAR* name, DWORD mode, DWORD reserved1, DWORD reserved2,
                          IStorage** storage) override;
    HRESULT OpenStorage(const OLECHAR* name, IStorage* priority, DWORD mode, SNB exclude, DWORD reserved,
                        IStorage** storage) override;
    HRESULT Commit(DWORD flags) override;
    HRESULT EnumElements(DWORD reserved1, void* reserved2, DWORD reserved3, IEnumSTATSTG** elements) override;
    HRESULT Stat(STATSTG* status, DWORD flags) override;

private:
    Result<NewElement*> add(const OLECHAR* name, DWORD mode);

    std::shared_ptr<CompoundWriter> writer;
    NewElement* element; // in `writer`
};

} // namespace StorageBackend
