#include "PdfBuilder.h"
#include "platform/PageRasterLib.h"
#include "support/TempFolder.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <memory>

namespace {

using PageRasterLib::PdfState;
using TestSupport::TempFolder;

struct ClosePipe {
    void operator()(std::FILE* pipe) const { ::pclose(pipe); }
};

/// What the helper program writes about a small document.
std::string loadedModules(const TempFolder& folder, const std::string& environment) {
    const std::string document =
        folder.write("document.pdf", PdfBuilder{}.page(mediaBox(75, 75)).bytes()).string();
    const std::string command = environment + " '" KESTO_LOADED_MODULES "' '" + document + "'";
    const std::unique_ptr<std::FILE, ClosePipe> pipe(::popen(command.c_str(), "r"));
    std::array<char, 256> line{};
    return pipe && std::fgets(line.data(), static_cast<int>(line.size()), pipe.get()) ? line.data() : "";
}

std::string state(PdfState expected) {
    return " state " + std::to_string(static_cast<int>(expected)) + "\n";
}

TEST(RasterModule, IsLoadedByTheFirstDocumentAndNotBefore) {
    const TempFolder folder;
    EXPECT_EQ(loadedModules(folder, ""), "00 11" + state(PdfState::Readable));
}

TEST(RasterModule, LeavesDocumentsUnavailableWhereItIsMissing) {
    const TempFolder folder;
    const std::filesystem::path library = KESTO_PAGE_RASTER_LIB;
    std::filesystem::copy_file(library, folder / library.filename().string());
    const std::string searched = (folder / "").string() + ":" + library.parent_path().string();
    EXPECT_EQ(loadedModules(folder, "LD_LIBRARY_PATH='" + searched + "'"),
              "00 00" + state(PdfState::Unavailable));
}

} // namespace
