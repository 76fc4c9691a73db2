#pragma once

#include "storage/CompoundFile.h"
#include "storage/StorageObject.h"

namespace StorageBackend {

/// A storage that is read.
class ReadStorage final : public StorageObject {
public:
    ReadStorage(std::shared_ptr<CompoundFile> opened, const Element& opensElement)
        : file(std::move(opened))
        , element(&opensElement) {}

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
    Result<const Element*> find(const OLECHAR* name, CompoundFormat::EntryType type, DWORD mode) const;

    std::shared_ptr<CompoundFile> file;
    const Element* element; // in `file`
};

} // namespace StorageBackend
