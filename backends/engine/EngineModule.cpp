#include "engine/EngineModule.h"

#include "engine/Engine.h"
#include "engine/FileSource.h"

#include <fmt/format.h>

#include <array>
#include <filesystem>
#include <system_error>

#include <dlfcn.h>

namespace EngineBackend {

namespace {

namespace fs = std::filesystem;

constexpr auto moduleFile = "KestoThumbnailer/kesto_engine.so";

fs::path folderOfThisLibrary() {
    Dl_info info = {};
    const auto* self = reinterpret_cast<const void*>(&folderOfThisLibrary);
    return dladdr(self, &info) != 0 && info.dli_fname ? fs::path(info.dli_fname).parent_path() : fs::path();
}

fs::path folderOfProgram() {
    std::error_code error;
    return fs::read_symlink("/proc/self/exe", error).parent_path();
}

/// Empty when the module is not installed. A program that has this code linked into itself, as tests have,
/// finds the module beside the libraries of its tree.
fs::path findModule() {
    for (const fs::path& file :
         {folderOfThisLibrary() / moduleFile, folderOfProgram() / "../lib" / moduleFile}) {
        std::error_code error;
        if (fs::is_regular_file(file, error))
            return file;
    }
    return {};
}

Result<const IEngine*> load() {
    const fs::path file = findModule();
    if (file.empty())
        return failure(ErrorKind::Unavailable, fmt::format("{}: the module is not installed", moduleFile));
    // Never closed: FFmpeg and its libraries keep state for each thread.
    void* module = dlopen(file.c_str(), RTLD_LAZY | RTLD_LOCAL);
    if (!module) // NOLINTNEXTLINE(concurrency-mt-unsafe): one buffer per thread in glibc
        return failure(ErrorKind::Unavailable, dlerror());
    const auto entry = reinterpret_cast<EngineEntry*>(dlsym(module, engineEntryName));
    if (!entry)
        return failure(ErrorKind::Unavailable, fmt::format("{}: exports no engine", file.string()));
    return entry();
}

template <typename File>
Result<std::unique_ptr<File>>
openThrough(Result<std::unique_ptr<File>> (IEngine::*open)(std::unique_ptr<IByteSource>, const std::string&)
                const,
            const std::string& path) {
    auto source = FileSource::open(path);
    if (!source)
        return tl::unexpected(source.error());
    const auto opened = engine();
    if (!opened)
        return tl::unexpected(opened.error());
    return ((*opened)->*open)(std::move(*source), path);
}

} // namespace

Result<const IEngine*> engine() {
    static const Result<const IEngine*> loaded = load();
    return loaded;
}

Result<std::unique_ptr<IMediaFile>> openMediaFile(const std::string& path) {
    return openThrough(&IEngine::openSource, path);
}

Result<std::unique_ptr<ISampleTables>> openSampleTables(const std::string& path) {
    return openThrough(&IEngine::openSampleTables, path);
}

} // namespace EngineBackend
