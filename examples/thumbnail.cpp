// Writes a thumbnail of at most 160 x 120 pixels: thumbnail PICTURE OUT.png
// Without CMake: c++ -std=c++20 thumbnail.cpp $(pkg-config --cflags --libs KestoThumbnailer) -o thumbnail
#include <KestoThumbnailer/GdiplusBitmapThumbnailingHelper.h>
#include <KestoThumbnailer/ImageHelper.h>

#include <filesystem>
#include <memory>
#include <string>

int main(int argc, char** argv) {
    if (argc != 3)
        return 2;
    ULONG_PTR token = 0;
    const Gdiplus::GdiplusStartupInput startup;
    if (Gdiplus::GdiplusStartup(&token, &startup, nullptr) != Gdiplus::Ok)
        return 1;
    const std::u32string input = std::filesystem::path(argv[1]).u32string(); // from UTF-8 in every locale
    bool saved = false;
    {
        const std::unique_ptr<Gdiplus::Bitmap> thumbnail(
            KestoThumbnailer::GdiplusBitmapThumbnailingHelper::GetThumbnailForImage(
                std::wstring(input.begin(), input.end()), 160, 120));
        saved = thumbnail && KestoThumbnailer::ImageHelper::QuickSavePic(thumbnail.get(), argv[2]);
    }
    Gdiplus::GdiplusShutdown(token);
    return saved ? 0 : 1;
}
