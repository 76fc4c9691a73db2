#include "inspection/source/StructuredStorage.h"

namespace NuvraUtl {

StructuredStorage::~StructuredStorage() {
    Close();
}

int StructuredStorage::Open(const std::wstring& file) {
    Close();
    void* root = nullptr;
    lastResult = StgOpenStorageEx(file.c_str(), STGM_READ | STGM_TRANSACTED | STGM_NOSNAPSHOT, STGFMT_ANY, 0,
                                  nullptr, nullptr, IID_IStorage, &root);
    if (FAILED(lastResult))
        return 0;
    storages.emplace_back(static_cast<IStorage*>(root));
    path = file;
    return 1;
}

int StructuredStorage::OpenStream(IStream** stream, const std::wstring& name) {
    *stream = nullptr;
    if (storages.empty()) {
        lastResult = E_POINTER;
        return 0;
    }
    lastResult = storages.back()->OpenStream(name.c_str(), nullptr, STGM_SHARE_EXCLUSIVE, 0, stream);
    return SUCCEEDED(lastResult) ? 1 : 0;
}

void StructuredStorage::ListElements(std::vector<std::wstring>& names) {
    if (storages.empty())
        return;
    IEnumSTATSTG* opened = nullptr;
    lastResult = storages.back()->EnumElements(0, nullptr, 0, &opened);
    if (FAILED(lastResult))
        return;
    const std::unique_ptr<IEnumSTATSTG, Release> elements(opened);
    for (STATSTG element = {}; elements->Next(1, &element, nullptr) == S_OK;) {
        const std::unique_ptr<WCHAR, void (*)(void*)> name(element.pwcsName, CoTaskMemFree);
        names.emplace_back(name.get());
    }
}

void StructuredStorage::Close() {
    while (!storages.empty())
        storages.pop_back(); // inner ones before those they lie in
    path.clear();
    lastResult = S_OK;
}

} // namespace NuvraUtl
