#include "gdiplus/codecs/CodecModules.h"

#include <fmt/format.h>

#include <array>
#include <filesystem>
#include <string>
#include <system_error>

#include <dlfcn.h>

namespace GdiplusBackend {

namespace {

namespace fs = std::filesystem;

constexpr auto moduleFolder = "KestoThumbnailer";

const char* fileOf(CodecModule which) {
    switch (which) {
    case CodecModule::Heif:
        return "kesto_codec_heif.so";
    case CodecModule::Svg:
        return "kesto_codec_svg.so";
    }
    return "";
}

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
/// finds the modules beside the libraries of its tree.
fs::path findModule(CodecModule which) {
    const std::array folders = {folderOfThisLibrary() / moduleFolder,
                                folderOfProgram() / ".." / "lib" / moduleFolder};
    for (const fs::path& folder : folders) {
        std::error_code error;
        if (fs::path file = folder / fileOf(which); fs::is_regular_file(file, error))
            return file;
    }
    return {};
}

tl::unexpected<LoadError> unavailable(CodecModule which, const std::string& why) {
    return tl::unexpected(LoadError{Gdiplus::UnknownImageFormat, fmt::format("{}: {}", fileOf(which), why)});
}

Result<const CodecEntry*> load(CodecModule which) {
    const fs::path file = findModule(which);
    if (file.empty())
        return unavailable(which, "this codec module is not installed");
    // Never closed: its libraries keep state for each thread.
    void* library = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!library)
        return unavailable(which, dlerror()); // NOLINT(concurrency-mt-unsafe): one buffer per thread in glibc
    using Entry = const CodecEntry* (*)();
    const auto entry = reinterpret_cast<Entry>(dlsym(library, "kestoCodec"));
    if (!entry)
        return unavailable(which, "the module exports no codec");
    return entry();
}

} // namespace

Result<const CodecEntry*> loadCodecModule(CodecModule which) {
    switch (which) {
    case CodecModule::Heif: {
        static const auto heif = load(CodecModule::Heif);
        return heif;
    }
    case CodecModule::Svg: {
        static const auto svg = load(CodecModule::Svg);
        return svg;
    }
    }
    return unavailable(which, "no such module");
}

bool isCodecModulePresent(CodecModule which) {
    return !findModule(which).empty();
}

} // namespace GdiplusBackend
