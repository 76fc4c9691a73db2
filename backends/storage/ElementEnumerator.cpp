#include "storage/ElementEnumerator.h"

#include "storage/ElementStatus.h"

#include <algorithm>

namespace StorageBackend {

HRESULT ElementEnumerator::Next(ULONG count, STATSTG* elements, ULONG* fetched) {
    if (fetched)
        *fetched = 0;
    if (!elements || (!fetched && count != 1))
        return STG_E_INVALIDPOINTER;
    return guarded([&] {
        const auto got = static_cast<ULONG>(std::min<std::size_t>(count, left()));
        for (ULONG made = 0; made < got; ++made) {
            const Element& element = file->element(storage->children[place + made]);
            if (const HRESULT result = describe(element, STATFLAG_DEFAULT, elements[made]); FAILED(result)) {
                while (made > 0)
                    CoTaskMemFree(elements[--made].pwcsName);
                return result;
            }
        }
        place += got;
        if (fetched)
            *fetched = got;
        return got == count ? S_OK : S_FALSE;
    });
}

HRESULT ElementEnumerator::Skip(ULONG count) {
    const std::size_t skipped = std::min<std::size_t>(count, left());
    place += skipped;
    return skipped == count ? S_OK : S_FALSE;
}

HRESULT ElementEnumerator::Reset() {
    place = 0;
    return S_OK;
}

HRESULT ElementEnumerator::Clone(IEnumSTATSTG** copy) {
    if (!copy)
        return STG_E_INVALIDPOINTER;
    *copy = nullptr;
    return guarded([&] {
        *copy = new ElementEnumerator(file, *storage, place);
        return S_OK;
    });
}

} // namespace StorageBackend
