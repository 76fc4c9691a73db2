#include "inspection/source/ContainerPath.h"
#include "inspection/source/StructuredStorage.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <sys/mman.h>
#include <unistd.h>

namespace {

void require(bool holds) {
    if (!holds)
        std::abort();
}

/// A file in memory, under a name that makes it a container.
class MemoryContainer {
public:
    MemoryContainer()
        : descriptor(::memfd_create("container", MFD_CLOEXEC))
        , folder(std::filesystem::temp_directory_path() / ("kesto-fuzz-" + std::to_string(::getpid()))) {
        require(descriptor >= 0 && std::filesystem::create_directory(folder));
        std::filesystem::create_symlink("/proc/self/fd/" + std::to_string(descriptor), folder / "x.plumex");
    }
    ~MemoryContainer() {
        std::error_code ignored;
        std::filesystem::remove_all(folder, ignored);
        ::close(descriptor);
    }
    MemoryContainer(const MemoryContainer&) = delete;
    MemoryContainer& operator=(const MemoryContainer&) = delete;

    void fill(const std::uint8_t* data, std::size_t size) const {
        require(::ftruncate(descriptor, 0) == 0);
        require(::pwrite(descriptor, data, size, 0) == static_cast<ssize_t>(size));
    }
    /// With backslashes, as members are looked up, and in lower case, so that no folder has to be searched.
    std::wstring path() const {
        std::wstring whole = (folder / "x.plumex").wstring();
        std::replace(whole.begin(), whole.end(), L'/', L'\\');
        return whole;
    }

private:
    int descriptor;
    std::filesystem::path folder;
};

struct Release {
    void operator()(IUnknown* object) const { object->Release(); }
};

/// From the start, and then from the middle again: both ways give the same bytes.
void checkStream(IStream& stream) {
    STATSTG status = {};
    require(stream.Stat(&status, STATFLAG_NONAME) == S_OK);
    std::vector<std::uint8_t> all(
        static_cast<std::size_t>(std::min<UINT64>(status.cbSize.QuadPart, 1U << 20U)));
    ULONG got = 0;
    if (FAILED(stream.Read(all.data(), static_cast<ULONG>(all.size()), &got)))
        return;
    require(got == all.size());
    const std::size_t middle = all.size() / 2;
    std::vector<std::uint8_t> half(std::min<std::size_t>(all.size() - middle, 1000));
    require(stream.Seek({static_cast<__int64>(middle)}, STREAM_SEEK_SET, nullptr) == S_OK);
    require(stream.Read(half.data(), static_cast<ULONG>(half.size()), &got) == S_OK && got == half.size());
    require(std::equal(half.begin(), half.end(), all.begin() + static_cast<std::ptrdiff_t>(middle)));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const MemoryContainer container;
    container.fill(data, size);
    const std::wstring path = container.path();
    NuvraUtl::StructuredStorage storage;
    if (storage.Open(path) == 0) {
        require(FAILED(storage.LastResult()));
        return 0;
    }
    std::vector<std::wstring> names;
    storage.ListElements(names);
    names.resize(std::min<std::size_t>(names.size(), 20));
    for (const std::wstring& name : names) {
        require(MemberExists(path + L'!' + name) == 1);
        IStream* stream = nullptr;
        if (storage.OpenStream(&stream, name) == 1)
            checkStream(*std::unique_ptr<IStream, Release>(stream));
    }
    return 0;
}
