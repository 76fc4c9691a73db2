#include "platform/AnimatedGif.h"

#include "engine/FileSource.h"
#include "gif/Animation.h"
#include "system/Environment.h"
#include "system/PathResolver.h"
#include "system/PixelBudget.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <chrono>
#include <limits>
#include <new>
#include <optional>

namespace FrameCodecLib {

namespace {

using GifBackend::Animation;
using GifBackend::Picture;

constexpr int hundredthsPerSecond = 100;

/// A file of the engine's as bytes of the GIF reader's.
class FileBytes : public GifBackend::IBytes {
public:
    explicit FileBytes(std::unique_ptr<EngineBackend::FileSource> opened)
        : file(std::move(opened)) {}

    std::size_t read(std::uint64_t place, std::span<std::byte> out) override {
        constexpr auto farthest = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
        if (place > farthest || !file->seek(static_cast<std::int64_t>(place)))
            return 0;
        std::size_t done = 0;
        while (done < out.size()) {
            const std::int64_t got = file->read(out.subspan(done));
            if (got <= 0)
                break;
            done += static_cast<std::size_t>(got);
        }
        return done;
    }

private:
    std::unique_ptr<EngineBackend::FileSource> file;
};

/// Shares a picture of the animation.
class GifBitmap : public Bitmap {
public:
    explicit GifBitmap(std::shared_ptr<const Picture> shared)
        : picture(std::move(shared)) {}

    int GetWidth() const override { return picture->width; }
    int GetHeight() const override { return picture->height; }
    int GetStride() const override { return picture->width * static_cast<int>(sizeof(std::uint32_t)); }
    bool Lock() override {
        isLocked = true;
        return true;
    }
    unsigned char* GetPixels() override {
        // For reading alone, as the interface says.
        auto* pixels = const_cast<std::uint32_t*>(picture->pixels.data());
        return isLocked ? reinterpret_cast<unsigned char*>(pixels) : nullptr;
    }
    void Unlock() override { isLocked = false; }

private:
    std::shared_ptr<const Picture> picture;
    bool isLocked = false;
};

GifBackend::Limits limitsFromEnvironment() {
    constexpr std::int64_t usualTimeInMs = 30'000;
    constexpr std::int64_t longestTimeInMs = 1'000'000'000;
    const std::int64_t timeInMs =
        SystemBackend::positiveFromEnvironment("KESTO_VIDEO_TIME_LIMIT_MS", usualTimeInMs);
    return {static_cast<std::uint64_t>(SystemBackend::pixelBudget()),
            std::chrono::milliseconds(std::min(timeInMs, longestTimeInMs))};
}

} // namespace

class WICAnimatedGIFLoader::File {
public:
    /// Null for what can't be read.
    static std::unique_ptr<File> open(const std::wstring& path) {
        if (path.empty() || path.find(L'\0') != std::wstring::npos)
            return nullptr;
        auto source = EngineBackend::FileSource::open(SystemBackend::toUtf8(path.c_str()));
        if (!source)
            return nullptr;
        auto animation =
            Animation::open(std::make_unique<FileBytes>(std::move(*source)), limitsFromEnvironment());
        return animation ? std::unique_ptr<File>(new File(std::move(animation))) : nullptr;
    }

    const GifBackend::Screen& screen() const { return animation->frames().screen(); }
    GifBackend::FrameList& frames() { return animation->frames(); }
    std::size_t indexAt(double time) { return animation->indexAt(time); }

    /// The index itself, or the last one; empty below 0.
    std::optional<std::size_t> known(int index) {
        if (index < 0)
            return std::nullopt;
        const auto wanted = static_cast<std::size_t>(index);
        return frames().at(wanted) ? wanted : frames().count() - 1;
    }

    boost::shared_ptr<Bitmap> bitmapAt(std::optional<std::size_t> index) {
        const auto picture = index ? animation->pictureAt(*index) : nullptr;
        return picture ? boost::make_shared<GifBitmap>(picture) : boost::shared_ptr<Bitmap>();
    }

private:
    explicit File(std::unique_ptr<Animation> opened)
        : animation(std::move(opened)) {}

    std::unique_ptr<Animation> animation;
};

WICAnimatedGIFLoader::WICAnimatedGIFLoader(const std::wstring& path) {
    try {
        file = File::open(path);
    } catch (const std::bad_alloc&) {
        return;
    }
    valid = file ? 1 : 0;
}

WICAnimatedGIFLoader::~WICAnimatedGIFLoader() = default;

boost::shared_ptr<Bitmap> WICAnimatedGIFLoader::GetFrameAtIndex(int index) {
    try {
        return file ? file->bitmapAt(file->known(index)) : boost::shared_ptr<Bitmap>();
    } catch (const std::bad_alloc&) {
        return {};
    }
}

boost::shared_ptr<Bitmap> WICAnimatedGIFLoader::GetFrameAtTime(double time) {
    try {
        return file ? file->bitmapAt(file->indexAt(time)) : boost::shared_ptr<Bitmap>();
    } catch (const std::bad_alloc&) {
        return {};
    }
}

Gdiplus::Color WICAnimatedGIFLoader::GetGdiplusBackgroundColor() const {
    const bool isNamed = file && file->screen().backgroundIndex < file->screen().palette.size();
    return Gdiplus::Color(isNamed ? file->screen().palette[file->screen().backgroundIndex] : 0);
}

int WICAnimatedGIFLoader::GetWidth() const {
    return file ? file->screen().width : 0;
}

int WICAnimatedGIFLoader::GetHeight() const {
    return file ? file->screen().height : 0;
}

int WICAnimatedGIFLoader::GetFrameCount() {
    return file ? static_cast<int>(file->frames().count()) : 0;
}

boost::rational<__int64> WICAnimatedGIFLoader::GetDuration() {
    return file ? boost::rational<__int64>(file->frames().duration(), hundredthsPerSecond) : 0;
}

int WICAnimatedGIFLoader::GetFrameIndexAtTime(double time) {
    return file ? static_cast<int>(file->indexAt(time)) : -1;
}

FrameTiming WICAnimatedGIFLoader::GetFrameTiming(int index) {
    const auto known = file ? file->known(index) : std::nullopt;
    if (!known)
        return {};
    return {{file->frames().startOf(*known), hundredthsPerSecond},
            {file->frames().endOf(*known), hundredthsPerSecond},
            /*isKeyFrame=*/false};
}

} // namespace FrameCodecLib
