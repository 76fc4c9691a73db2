#include "backends/gdiplus/codecs/HeifBuilder.h"

#include <memory>
#include <stdexcept>

namespace GdiplusBackend {

namespace {

struct Deleter {
    void operator()(heif_context* context) const { heif_context_free(context); }
    void operator()(heif_image* image) const { heif_image_release(image); }
    void operator()(heif_encoder* encoder) const { heif_encoder_release(encoder); }
    void operator()(heif_encoding_options* options) const { heif_encoding_options_free(options); }
};
template <typename T>
using Owned = std::unique_ptr<T, Deleter>;

void expect(const heif_error& error) {
    if (error.code)
        throw std::logic_error(error.message);
}

Owned<heif_image> imageOf(const HeifSpec& spec) {
    heif_image* created = nullptr;
    expect(heif_image_create(spec.width, spec.height, heif_colorspace_RGB,
                             spec.alpha ? heif_chroma_interleaved_RGBA : heif_chroma_interleaved_RGB,
                             &created));
    Owned<heif_image> image(created);
    expect(heif_image_add_plane(created, heif_channel_interleaved, spec.width, spec.height, 8));
    int stride = 0;
    std::uint8_t* plane = heif_image_get_plane(created, heif_channel_interleaved, &stride);
    for (int y = 0; y < spec.height; ++y) {
        std::uint8_t* sample = plane + static_cast<std::ptrdiff_t>(y) * stride;
        for (int x = 0; x < spec.width; ++x) {
            const std::uint32_t argb = spec.pixel(x, y);
            for (const unsigned shift : {16U, 8U, 0U})
                *sample++ = static_cast<std::uint8_t>(argb >> shift);
            if (spec.alpha)
                *sample++ = static_cast<std::uint8_t>(argb >> 24U);
        }
    }
    if (!spec.iccProfile.empty())
        expect(heif_image_set_raw_color_profile(created, "prof", spec.iccProfile.data(),
                                                spec.iccProfile.size()));
    return image;
}

heif_error append(heif_context* /*context*/, const void* data, size_t size, void* file) {
    const auto* bytes = static_cast<const std::byte*>(data);
    static_cast<Bytes*>(file)->assign(bytes, bytes + size);
    return {heif_error_Ok, heif_suberror_Unspecified, nullptr};
}

} // namespace

Bytes buildHeif(const HeifSpec& spec) {
    const Owned<heif_context> context(heif_context_alloc());
    heif_encoder* found = nullptr;
    expect(heif_context_get_encoder_for_format(context.get(), spec.coding, &found));
    const Owned<heif_encoder> encoder(found);
    expect(heif_encoder_set_lossy_quality(found, 100));
    expect(heif_encoder_set_parameter(found, "chroma", "444"));
    const Owned<heif_encoding_options> options(heif_encoding_options_alloc());
    options->image_orientation = spec.orientation;
    expect(heif_context_encode_image(context.get(), imageOf(spec).get(), found, options.get(), nullptr));
    Bytes file;
    heif_writer writer = {1, append};
    expect(heif_context_write(context.get(), &writer, &file));
    return file;
}

} // namespace GdiplusBackend
