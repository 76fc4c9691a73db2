#include "PictureFile.h"

#include "support/PngFile.h"

#include <stdexcept>

#include <png.h>

PictureFile readPng(const std::filesystem::path& path) {
    png_image image = {};
    image.version = PNG_IMAGE_VERSION;
    if (!png_image_begin_read_from_file(&image, path.c_str()))
        throw std::runtime_error(path.string() + ": " + image.message);
    image.format = PNG_FORMAT_BGRA;
    PictureFile picture;
    picture.width = static_cast<int>(image.width);
    picture.height = static_cast<int>(image.height);
    picture.pixels.resize(std::size_t{image.width} * image.height);
    if (!png_image_finish_read(&image, nullptr, picture.pixels.data(), 0, nullptr))
        throw std::runtime_error(path.string() + ": " + image.message);
    return picture;
}

std::vector<unsigned char> redAndBluePng(int width, int height) {
    const TestSupport::PngFile file = {
        .width = width,
        .height = height,
        .pixelAt = [width](int x, int) { return x < width / 2 ? red : blue; },
    };
    return file.bytes();
}
