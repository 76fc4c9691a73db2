#include "platform/System.h"

#include "backends/system/TempFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <climits>
#include <vector>

namespace {

namespace fs = std::filesystem;

constexpr DWORD byAddress =
    GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;

std::wstring wide(const std::string& ascii) {
    return {ascii.begin(), ascii.end()};
}

HMODULE load(const std::string& path) {
    return LoadLibraryW(wide(path).c_str());
}

std::wstring fileOf(HMODULE module) {
    std::array<WCHAR, PATH_MAX> buffer{};
    const DWORD length = GetModuleFileNameW(module, buffer.data(), buffer.size());
    return {buffer.data(), length};
}

std::wstring thisProgram() {
    return fs::read_symlink("/proc/self/exe").wstring();
}

HMODULE moduleAround(const void* address) {
    HMODULE module = nullptr;
    return GetModuleHandleExW(byAddress, static_cast<const WCHAR*>(address), &module) ? module : nullptr;
}

/// The module built for these tests, loaded while this lives.
class AnsweringModule {
public:
    AnsweringModule()
        : module(load(ANSWERING_MODULE)) {}
    ~AnsweringModule() { FreeLibrary(module); }
    AnsweringModule(const AnsweringModule&) = delete;
    AnsweringModule& operator=(const AnsweringModule&) = delete;

    HMODULE handle() const { return module; }
    FARPROC answer() const { return GetProcAddress(module, "kestoAnswer"); }

private:
    HMODULE module;
};

const void* addressOf(FARPROC function) {
    return reinterpret_cast<const void*>(function);
}

TEST(LoadLibrary, LoadsAModuleWhoseFunctionsCanBeCalled) {
    const AnsweringModule module;
    ASSERT_NE(module.handle(), nullptr);
    ASSERT_NE(module.answer(), nullptr);
    EXPECT_EQ(reinterpret_cast<int (*)()>(module.answer())(), 42);
}

TEST(LoadLibrary, ResolvesThePath) {
    const TempFolder temp;
    fs::copy_file(ANSWERING_MODULE, temp.folder("Modules") + "/Answering.so");
    const HMODULE module = load(temp / "modules\\ANSWERING.SO");
    ASSERT_NE(module, nullptr);
    EXPECT_EQ(fileOf(module), wide(temp / "Modules/Answering.so"));
    EXPECT_TRUE(FreeLibrary(module));
}

TEST(LoadLibrary, FindsAPathRelativeToTheCurrentFolder) {
    const TempFolder temp;
    fs::copy_file(ANSWERING_MODULE, temp / "odd\\name.so");
    const CurrentFolder here(temp.path());
    const HMODULE module = load("odd\\name.so");
    ASSERT_NE(module, nullptr);
    EXPECT_TRUE(FreeLibrary(module));
}

TEST(LoadLibrary, SearchesTheSystemForABareName) {
    const HMODULE module = load("libc.so.6");
    ASSERT_NE(module, nullptr);
    EXPECT_NE(GetProcAddress(module, "strlen"), nullptr);
    EXPECT_TRUE(FreeLibrary(module));
}

TEST(LoadLibrary, DoesNotSearchTheCurrentFolderForABareName) {
    const TempFolder temp;
    fs::copy_file(ANSWERING_MODULE, temp / "kesto-planted.so");
    const CurrentFolder here(temp.path());
    EXPECT_EQ(load("kesto-planted.so"), nullptr);
}

TEST(LoadLibrary, RefusesWhatIsNoModule) {
    const TempFolder temp;
    EXPECT_EQ(load(temp / "missing.so"), nullptr);
    EXPECT_EQ(load(temp.file("text.so", "no module")), nullptr);
    EXPECT_EQ(load(temp.file("empty.so", "")), nullptr);
    EXPECT_EQ(load(temp.path()), nullptr);
    EXPECT_EQ(load(""), nullptr);
    EXPECT_EQ(LoadLibraryW(nullptr), nullptr);
}

TEST(FreeLibrary, CountsEveryLoading) {
    const HMODULE first = load(ANSWERING_MODULE);
    const HMODULE second = load(ANSWERING_MODULE);
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(first, second);
    const void* address = addressOf(GetProcAddress(first, "kestoAnswer"));
    EXPECT_TRUE(FreeLibrary(first));
    EXPECT_EQ(moduleAround(address), second);
    EXPECT_TRUE(FreeLibrary(second));
    EXPECT_EQ(moduleAround(address), nullptr);
}

TEST(FreeLibrary, RefusesNull) {
    EXPECT_FALSE(FreeLibrary(nullptr));
}

TEST(GetProcAddress, IsNullForWhatIsNotThere) {
    const AnsweringModule module;
    EXPECT_EQ(GetProcAddress(module.handle(), "kestoQuestion"), nullptr);
    EXPECT_EQ(GetProcAddress(module.handle(), nullptr), nullptr);
    EXPECT_EQ(GetProcAddress(nullptr, "kestoAnswer"), nullptr);
}

TEST(GetProcAddress, KnowsNoOrdinals) {
    const AnsweringModule module;
    EXPECT_EQ(GetProcAddress(module.handle(), reinterpret_cast<const char*>(UINT_PTR{1})), nullptr);
}

TEST(GetModuleHandleEx, FindsTheModuleOfAnAddressWithoutCountingAUser) {
    const HMODULE loaded = load(ANSWERING_MODULE);
    ASSERT_NE(loaded, nullptr);
    const void* address = addressOf(GetProcAddress(loaded, "kestoAnswer"));
    EXPECT_EQ(moduleAround(address), loaded);
    EXPECT_EQ(fileOf(moduleAround(address)), wide(ANSWERING_MODULE));
    EXPECT_TRUE(FreeLibrary(loaded));
    EXPECT_EQ(moduleAround(address), nullptr);
}

TEST(GetModuleHandleEx, FindsTheProgramItself) {
    const HMODULE module = moduleAround(addressOf(reinterpret_cast<FARPROC>(&thisProgram)));
    ASSERT_NE(module, nullptr);
    EXPECT_EQ(fileOf(module), thisProgram());
}

TEST(GetModuleHandleEx, LeavesNullForAnAddressOutsideOfModules) {
    HMODULE module = reinterpret_cast<HMODULE>(UINT_PTR{1});
    const auto onTheHeap = std::make_unique<WCHAR>();
    EXPECT_FALSE(GetModuleHandleExW(byAddress, onTheHeap.get(), &module));
    EXPECT_EQ(module, nullptr);
}

TEST(GetModuleHandleEx, RefusesOtherFlags) {
    const AnsweringModule loaded;
    const auto* address = static_cast<const WCHAR*>(addressOf(loaded.answer()));
    for (const DWORD flags : {DWORD{0}, GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS, byAddress | 1}) {
        HMODULE module = loaded.handle();
        EXPECT_FALSE(GetModuleHandleExW(flags, address, &module)) << flags;
        EXPECT_EQ(module, nullptr) << flags;
    }
    EXPECT_FALSE(GetModuleHandleExW(byAddress, address, nullptr));
}

TEST(GetModuleFileName, NamesTheProgramForNull) {
    EXPECT_EQ(fileOf(nullptr), thisProgram());
}

TEST(GetModuleFileName, NamesTheFileOfAModuleInFull) {
    const TempFolder temp;
    fs::copy_file(ANSWERING_MODULE, temp.folder("sub") + "/answering.so");
    const CurrentFolder here(temp.path());
    const HMODULE module = load("sub/answering.so");
    ASSERT_NE(module, nullptr);
    EXPECT_EQ(fileOf(module), fs::canonical("sub/answering.so").wstring());
    const CurrentFolder elsewhere("/");
    EXPECT_EQ(fileOf(module), wide(temp / "sub/answering.so"));
    EXPECT_TRUE(FreeLibrary(module));
}

TEST(GetModuleFileName, FitsExactly) {
    const std::wstring program = thisProgram();
    std::vector<WCHAR> buffer(program.size() + 2, L'#');
    const auto size = static_cast<DWORD>(program.size() + 1);
    EXPECT_EQ(GetModuleFileNameW(nullptr, buffer.data(), size), program.size());
    EXPECT_STREQ(buffer.data(), program.c_str());
    EXPECT_EQ(buffer.back(), L'#');
}

TEST(GetModuleFileName, CutsWhatDoesNotFitAndTellsTheSizeOfTheBuffer) {
    const std::wstring program = thisProgram();
    std::vector<WCHAR> buffer(program.size() + 1, L'#');
    const auto size = static_cast<DWORD>(program.size());
    EXPECT_EQ(GetModuleFileNameW(nullptr, buffer.data(), size), size);
    EXPECT_EQ(std::wstring(buffer.data()), program.substr(0, program.size() - 1));
    EXPECT_EQ(buffer.back(), L'#');
}

TEST(GetModuleFileName, HasRoomForATerminatorAloneInOneUnit) {
    WCHAR unit = L'#';
    EXPECT_EQ(GetModuleFileNameW(nullptr, &unit, 1), 1U);
    EXPECT_EQ(unit, L'\0');
}

TEST(GetModuleFileName, FailsWithoutABuffer) {
    WCHAR unit = L'#';
    EXPECT_EQ(GetModuleFileNameW(nullptr, &unit, 0), 0U);
    EXPECT_EQ(unit, L'#');
    EXPECT_EQ(GetModuleFileNameW(nullptr, nullptr, 10), 0U);
}

} // namespace
