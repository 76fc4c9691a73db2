#include "backends/storage/CompoundFiles.h"

#include <filesystem>

#include <sys/stat.h>

using namespace StorageBackend;

namespace {

class StorageRequests : public ::testing::Test {
protected:
    StorageRequests() {
        const StoragePtr storage = createStorage(path);
        addStream(*storage, L"Screen_Stream.avi", "screen");
        addStorage(*storage, L"Folder");
        EXPECT_EQ(storage->Commit(STGC_DEFAULT), S_OK);
    }

    HRESULT opened(const std::string& file) const {
        StoragePtr storage;
        return openResult(file, storage);
    }
    HRESULT created(const std::string& file, DWORD mode, DWORD format = STGFMT_DOCFILE,
                    ULONG sectorSize = 512) {
        STGOPTIONS options = {1, 0, sectorSize};
        void* object = nullptr;
        const HRESULT result =
            StgCreateStorageEx(wide(file).c_str(), mode, format, 0, &options, nullptr, IID_IStorage, &object);
        if (object)
            static_cast<IStorage*>(object)->Release();
        return result;
    }

    TempFolder folder;
    std::string path = folder / "file.plumex";
};

} // namespace

TEST_F(StorageRequests, TellMissingUnreadableAndForeignFilesApart) {
    EXPECT_EQ(opened(folder / "missing"), STG_E_FILENOTFOUND);
    EXPECT_EQ(opened(path + "/missing"), STG_E_PATHNOTFOUND);
    EXPECT_EQ(opened(""), STG_E_INVALIDNAME);
    EXPECT_EQ(opened(folder.folder("folder")), STG_E_ACCESSDENIED);
    ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
    EXPECT_EQ(opened(folder / "pipe"), STG_E_ACCESSDENIED);
    EXPECT_EQ(opened(folder.file("text", "This is no compound file, but of some length.")),
              STG_E_FILEALREADYEXISTS);
    EXPECT_EQ(opened(folder.file("empty", "")), STG_E_FILEALREADYEXISTS);
}

TEST_F(StorageRequests, FindFilesAsOtherPathsDo) {
    EXPECT_EQ(opened(folder / "FILE.Plumex"), S_OK);
    EXPECT_EQ(opened(folder.path() + "\\file.plumex"), S_OK);
}

TEST_F(StorageRequests, OpenExistingFilesForReadingAlone) {
    void* object = nullptr;
    const auto open = [&](DWORD mode, DWORD format, const IID& iid) {
        const HRESULT result =
            StgOpenStorageEx(wide(path).c_str(), mode, format, 0, nullptr, nullptr, iid, &object);
        if (object)
            static_cast<IUnknown*>(object)->Release();
        return result;
    };
    EXPECT_EQ(open(STGM_READ, STGFMT_ANY, IID_IStorage), S_OK);
    EXPECT_EQ(open(STGM_READ, STGFMT_STORAGE, IID_IUnknown), S_OK);
    EXPECT_EQ(open(STGM_READWRITE | STGM_SHARE_EXCLUSIVE, STGFMT_ANY, IID_IStorage), STG_E_ACCESSDENIED);
    EXPECT_EQ(open(STGM_READ, STGFMT_FILE, IID_IStorage), STG_E_INVALIDPARAMETER);
    EXPECT_EQ(open(STGM_READ, STGFMT_ANY, IID_IStream), E_NOINTERFACE);
    EXPECT_EQ(object, nullptr);
    EXPECT_EQ(StgOpenStorageEx(nullptr, 0, STGFMT_ANY, 0, nullptr, nullptr, IID_IStorage, &object),
              STG_E_INVALIDPOINTER);
    EXPECT_EQ(StgOpenStorageEx(L"x", 0, STGFMT_ANY, 0, nullptr, nullptr, IID_IStorage, nullptr),
              STG_E_INVALIDPOINTER);
}

TEST_F(StorageRequests, OpenElementsByKindAndExclusively) {
    const StoragePtr storage = openStorage(path);
    IStream* stream = nullptr;
    EXPECT_EQ(storage->OpenStream(L"Folder", nullptr, forReading, 0, &stream), STG_E_FILENOTFOUND);
    EXPECT_EQ(storage->OpenStream(L"Screen", nullptr, forReading, 0, &stream), STG_E_FILENOTFOUND);
    EXPECT_EQ(storage->OpenStream(L"Screen_Stream.avi", nullptr, STGM_READ, 0, &stream), STG_E_INVALIDFLAG);
    EXPECT_EQ(
        storage->OpenStream(L"Screen_Stream.avi", nullptr, STGM_WRITE | STGM_SHARE_EXCLUSIVE, 0, &stream),
        STG_E_ACCESSDENIED);
    EXPECT_EQ(storage->OpenStream(L"", nullptr, forReading, 0, &stream), STG_E_INVALIDNAME);
    EXPECT_EQ(storage->OpenStream(nullptr, nullptr, forReading, 0, &stream), STG_E_INVALIDPOINTER);
    EXPECT_EQ(storage->OpenStream(L"Folder", nullptr, forReading, 0, nullptr), STG_E_INVALIDPOINTER);
    EXPECT_EQ(storage->CreateStream(L"new", forWriting, 0, 0, &stream), STG_E_ACCESSDENIED);
    EXPECT_EQ(stream, nullptr);
    IStorage* inner = nullptr;
    EXPECT_EQ(storage->OpenStorage(L"Screen_Stream.avi", nullptr, forReading, nullptr, 0, &inner),
              STG_E_FILENOTFOUND);
    EXPECT_EQ(inner, nullptr);
}

TEST_F(StorageRequests, EnumerateInPiecesSkipAndStartAgain) {
    const StoragePtr storage = openStorage(path);
    IEnumSTATSTG* opened = nullptr;
    ASSERT_EQ(storage->EnumElements(0, nullptr, 0, &opened), S_OK);
    const std::unique_ptr<IEnumSTATSTG, Releaser> elements(opened);
    STATSTG found[3] = {};
    ULONG count = 0;
    EXPECT_EQ(elements->Next(3, found, &count), S_FALSE);
    ASSERT_EQ(count, 2U);
    EXPECT_EQ(std::wstring(found[0].pwcsName), L"Folder");
    EXPECT_EQ(found[0].type, STGTY_STORAGE);
    EXPECT_EQ(std::wstring(found[1].pwcsName), L"Screen_Stream.avi");
    EXPECT_EQ(found[1].cbSize.QuadPart, 6U);
    for (const STATSTG& each : found)
        CoTaskMemFree(each.pwcsName);
    EXPECT_EQ(elements->Next(1, found, nullptr), S_FALSE);
    EXPECT_EQ(elements->Reset(), S_OK);
    EXPECT_EQ(elements->Skip(1), S_OK);
    IEnumSTATSTG* copied = nullptr;
    ASSERT_EQ(elements->Clone(&copied), S_OK);
    const std::unique_ptr<IEnumSTATSTG, Releaser> clone(copied);
    ASSERT_EQ(clone->Next(1, found, nullptr), S_OK);
    EXPECT_EQ(std::wstring(found[0].pwcsName), L"Screen_Stream.avi");
    CoTaskMemFree(found[0].pwcsName);
    EXPECT_EQ(elements->Skip(2), S_FALSE);
    EXPECT_EQ(elements->Next(2, found, nullptr), STG_E_INVALIDPOINTER);
}

TEST_F(StorageRequests, PutANewFileInPlaceByCommitAlone) {
    const std::string before = fileContent(path);
    {
        const StoragePtr storage = createStorage(path);
        addStream(*storage, L"other", pattern(100'000));
        EXPECT_EQ(fileContent(path), before);
    }
    EXPECT_EQ(fileContent(path), before);
    EXPECT_EQ(folder.names(), std::set<std::string>{"file.plumex"});
    {
        const StoragePtr storage = createStorage(path);
        addStream(*storage, L"other", "new");
        EXPECT_EQ(storage->Commit(STGC_DEFAULT), S_OK);
    }
    EXPECT_EQ(namesIn(*openStorage(path)), std::vector<std::wstring>{L"other"});
    EXPECT_EQ(folder.names(), std::set<std::string>{"file.plumex"});
}

TEST_F(StorageRequests, CloseANewFileOnceItIsCommitted) {
    const StoragePtr storage = createStorage(folder / "new");
    const StreamPtr stream = createStream(*storage, L"s");
    ASSERT_EQ(storage->Commit(STGC_DEFAULT), S_OK);
    EXPECT_EQ(stream->Write("x", 1, nullptr), STG_E_REVERTED);
    EXPECT_EQ(stream->SetSize({5}), STG_E_REVERTED);
    IStream* other = nullptr;
    EXPECT_EQ(storage->CreateStream(L"t", forWriting, 0, 0, &other), STG_E_REVERTED);
    EXPECT_EQ(storage->Commit(STGC_DEFAULT), STG_E_REVERTED);
}

TEST_F(StorageRequests, CreateWhereTheyMay) {
    EXPECT_EQ(created(path, STGM_WRITE | STGM_SHARE_EXCLUSIVE), STG_E_FILEALREADYEXISTS);
    EXPECT_EQ(created(folder / "no/such/file", forWriting), STG_E_PATHNOTFOUND);
    EXPECT_EQ(created(folder.folder("folder"), forWriting), STG_E_ACCESSDENIED);
    EXPECT_EQ(created("/dev/null", forWriting), STG_E_ACCESSDENIED);
    ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
    EXPECT_EQ(created(folder / "pipe", forWriting), STG_E_ACCESSDENIED) << "without waiting for a reader";
    EXPECT_EQ(created(folder / "new", STGM_READ), STG_E_INVALIDFLAG);
    EXPECT_EQ(created(folder / "new", forWriting, STGFMT_STORAGE, 4096), STG_E_INVALIDPARAMETER);
    EXPECT_EQ(created(folder / "new", forWriting, STGFMT_DOCFILE, 1024), STG_E_INVALIDPARAMETER);
    EXPECT_FALSE(std::filesystem::exists(folder / "new"));
}

TEST_F(StorageRequests, RefuseNamesThatTheFormatForbids) {
    const StoragePtr storage = createStorage(folder / "new");
    IStream* stream = nullptr;
    const auto result = [&](const std::wstring& name) {
        const HRESULT made = storage->CreateStream(name.c_str(), forWriting, 0, 0, &stream);
        if (stream)
            stream->Release();
        return made;
    };
    EXPECT_EQ(result(L""), STG_E_INVALIDNAME);
    EXPECT_EQ(result(std::wstring(32, L'x')), STG_E_INVALIDNAME);
    EXPECT_EQ(result(std::wstring(16, L'\U0001F600')), STG_E_INVALIDNAME) << "of 32 UTF-16 units";
    for (const wchar_t* name : {L"a/b", L"a\\b", L"a:b", L"a!b"})
        EXPECT_EQ(result(name), STG_E_INVALIDNAME) << name;
    EXPECT_EQ(result(std::wstring(31, L'x')), S_OK);
    EXPECT_EQ(result(std::wstring(31, L'X')), STG_E_FILEALREADYEXISTS);
}

TEST_F(StorageRequests, KeepNamesThatAreNotOfLettersAToZ) {
    const std::wstring names[] = {L"\u00C4\u00D6\u00DC", L"\u0416\u0434\u0430\u043D", L"a\U0001F600b"};
    {
        const StoragePtr storage = createStorage(path);
        for (const std::wstring& name : names)
            addStream(*storage, name, "content");
        ASSERT_EQ(storage->Commit(STGC_DEFAULT), S_OK);
    }
    const StoragePtr storage = openStorage(path);
    const std::vector<std::wstring> found = namesIn(*storage);
    for (const std::wstring& name : names)
        EXPECT_NE(std::find(found.begin(), found.end(), name), found.end());
    EXPECT_EQ(contentOf(*storage, L"\u00E4\u00F6\u00FC"), "content");
    EXPECT_EQ(contentOf(*storage, L"\u0436\u0414\u0410\u041D"), "content");
    EXPECT_EQ(contentOf(*storage, L"A\U0001F600B"), "content");
}

TEST_F(StorageRequests, RefuseStreamsOfMoreThanTheFormatHasRoomFor) {
    const StoragePtr storage = createStorage(folder / "new");
    const StreamPtr stream = createStream(*storage, L"s");
    EXPECT_EQ(stream->SetSize({(UINT64{1} << 31U) + 1}), STG_E_MEDIUMFULL);
    EXPECT_EQ(stream->Seek({__int64{1} << 60}, STREAM_SEEK_SET, nullptr), S_OK);
    EXPECT_EQ(stream->Write("x", 1, nullptr), STG_E_MEDIUMFULL);
}

TEST_F(StorageRequests, DoWithoutWhatNobodyNeeds) {
    const StoragePtr storage = openStorage(path);
    EXPECT_EQ(storage->Revert(), E_NOTIMPL);
    EXPECT_EQ(storage->DestroyElement(L"Folder"), E_NOTIMPL);
    EXPECT_EQ(storage->RenameElement(L"Folder", L"Other"), E_NOTIMPL);
    EXPECT_EQ(storage->CopyTo(0, nullptr, nullptr, storage.get()), E_NOTIMPL);
    EXPECT_EQ(storage->Commit(STGC_DEFAULT), S_OK);
}
