// Thumbnails of every picture of a folder, on one thread: many_photos_bench FOLDER OUTPUT-FOLDER

#include <KestoThumbnailer/GdiplusBitmapThumbnailingHelper.h>
#include <KestoThumbnailer/ImageHelper.h>

#include <cstdio>
#include <filesystem>
#include <memory>

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fputs("usage: many_photos_bench FOLDER OUTPUT-FOLDER\n", stderr);
        return 2;
    }
    ULONG_PTR token = 0;
    const Gdiplus::GdiplusStartupInput input;
    if (Gdiplus::GdiplusStartup(&token, &input, nullptr) != Gdiplus::Ok)
        return 1;
    int failed = 0;
    for (const auto& entry : std::filesystem::directory_iterator(argv[1])) {
        using namespace KestoThumbnailer;
        const std::unique_ptr<Gdiplus::Bitmap> picture(
            GdiplusBitmapThumbnailingHelper::GetThumbnailForImage(entry.path().wstring(), 160, 120));
        const auto output = std::filesystem::path(argv[2]) / entry.path().stem();
        if (!picture || !ImageHelper::QuickSavePic(picture.get(), output.string() + ".png"))
            ++failed;
    }
    Gdiplus::GdiplusShutdown(token);
    return failed == 0 ? 0 : 1;
}
