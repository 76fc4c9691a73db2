#pragma once

#include "storage/ComObject.h"
#include "storage/CompoundFile.h"

#include "platform/StructuredStorage.h"

namespace StorageBackend {

/// The elements of a storage that is read.
class ElementEnumerator final : public ComObject<IEnumSTATSTG> {
public:
    ElementEnumerator(std::shared_ptr<CompoundFile> opened, const Element& enumerated,
                      std::size_t startPlace = 0)
        : ComObject(IID_IEnumSTATSTG)
        , file(std::move(opened))
        , storage(&enumerated)
        , place(startPlace) {}

    HRESULT Next(ULONG count, STATSTG* elements, ULONG* fetched) override;
    HRESULT Skip(ULONG count) override;
    HRESULT Reset() override;
    HRESULT Clone(IEnumSTATSTG** copy) override;

private:
    std::size_t left() const { return storage->children.size() - place; }

    std::shared_ptr<CompoundFile> file;
    const Element* storage; // in `file`
    std::size_t place;
};

} // namespace StorageBackend
