#include "backends/storage/CompoundFiles.h"

#include <gsf/gsf-infile-msole.h>
#include <gsf/gsf-input-stdio.h>
#include <gsf/gsf-outfile-msole.h>
#include <gsf/gsf-output-stdio.h>

using namespace StorageBackend;

// Another reader and writer of the format agrees with this one.

namespace {

struct Unref {
    template <typename Object>
    void operator()(Object* object) const {
        g_object_unref(object);
    }
};
template <typename Object>
using Ref = std::unique_ptr<Object, Unref>;

void write(GsfOutfile& folder, const char* name, const std::string& content) {
    const Ref<GsfOutput> stream(gsf_outfile_new_child(&folder, name, FALSE));
    EXPECT_TRUE(
        gsf_output_write(stream.get(), content.size(), reinterpret_cast<const guint8*>(content.data())));
    EXPECT_TRUE(gsf_output_close(stream.get()));
}

void writeFile(const std::string& path, unsigned sectorSize) {
    const Ref<GsfOutput> file(gsf_output_stdio_new(path.c_str(), nullptr));
    const Ref<GsfOutfile> root(gsf_outfile_msole_new_full(file.get(), sectorSize, 64));
    write(*root, "Screen_Stream.avi", pattern(9'000'000, 3));
    write(*root, "manifest.plumxml", "<manifest/>");
    {
        const Ref<GsfOutput> inner(gsf_outfile_new_child(root.get(), "Inner", TRUE));
        write(*GSF_OUTFILE(inner.get()), "Audio.wav", pattern(5000));
        EXPECT_TRUE(gsf_output_close(inner.get()));
    }
    EXPECT_TRUE(gsf_output_close(GSF_OUTPUT(root.get())));
}

std::string read(GsfInfile& folder, const char* name) {
    const Ref<GsfInput> stream(gsf_infile_child_by_name(&folder, name));
    if (!stream)
        return "is missing";
    std::string content(static_cast<std::size_t>(gsf_input_size(stream.get())), '\0');
    if (!content.empty())
        gsf_input_read(stream.get(), content.size(), reinterpret_cast<guint8*>(content.data()));
    return content;
}

class ForeignLibrary : public ::testing::TestWithParam<ULONG> {
protected:
    TempFolder folder;
};

} // namespace

TEST_P(ForeignLibrary, WritesWhatIsReadHere) {
    writeFile(folder / "f", GetParam());
    const StoragePtr storage = openStorage(folder / "f");
    EXPECT_EQ(namesIn(*storage),
              (std::vector<std::wstring>{L"Inner", L"manifest.plumxml", L"Screen_Stream.avi"}));
    EXPECT_TRUE(contentOf(*storage, L"screen_stream.AVI") == pattern(9'000'000, 3));
    EXPECT_EQ(contentOf(*storage, L"manifest.plumxml"), "<manifest/>");
    IStorage* inner = nullptr;
    ASSERT_EQ(storage->OpenStorage(L"inner", nullptr, forReading, nullptr, 0, &inner), S_OK);
    EXPECT_EQ(contentOf(*StoragePtr(inner), L"Audio.wav"), pattern(5000));
}

TEST_P(ForeignLibrary, ReadsWhatIsWrittenHere) {
    {
        const StoragePtr storage = createStorage(folder / "f", GetParam());
        addStream(*storage, L"large", pattern(9'000'000));
        addStream(*storage, L"\u00C4", "umlaut");
        addStream(*storage, L"empty", "");
        const StoragePtr inner = addStorage(*storage, L"Inner");
        for (int number = 0; number < 50; ++number)
            addStream(*inner, wide("s" + std::to_string(number)),
                      pattern(100, static_cast<unsigned>(number)));
        ASSERT_EQ(storage->Commit(STGC_DEFAULT), S_OK);
    }
    const Ref<GsfInput> file(gsf_input_stdio_new((folder / "f").c_str(), nullptr));
    const Ref<GsfInfile> root(gsf_infile_msole_new(file.get(), nullptr));
    ASSERT_TRUE(root);
    EXPECT_EQ(gsf_infile_num_children(root.get()), 4);
    EXPECT_TRUE(read(*root, "large") == pattern(9'000'000));
    EXPECT_EQ(read(*root, "\u00C4"), "umlaut");
    EXPECT_EQ(read(*root, "empty"), "");
    const Ref<GsfInput> inner(gsf_infile_child_by_name(root.get(), "Inner"));
    ASSERT_TRUE(inner);
    for (int number = 0; number < 50; ++number)
        EXPECT_EQ(read(*GSF_INFILE(inner.get()), ("s" + std::to_string(number)).c_str()),
                  pattern(100, static_cast<unsigned>(number)));
}

INSTANTIATE_TEST_SUITE_P(OfSectors, ForeignLibrary, ::testing::Values(512, 4096),
                         [](const auto& size) { return std::to_string(size.param); });
