#include "inspection/source/MediaPath.h"
#include "platform/MOSK.h"
#include "platform/System.h"
#include "production/GdiplusBitmapThumbnailingHelper.h"
#include "production/InsetThumbnail.h"
#include "production/PathExtension.h"
#include "scheduling/imagefile/TextConversion.h"

namespace KestoThumbnailer {

namespace {

using BitmapPtr = boost::shared_ptr<Gdiplus::Bitmap>;

enum TrackKind : std::int32_t { VideoTrack = 0 };
enum TrackType : std::int32_t { ScreenTrack = 100, CameraTrack = 101 };
enum MemberKind : std::int32_t { WholeFile = 0, CameraMember = 1, ScreenMember = 3 };

bool IsShown(std::int32_t memberKind) {
    return memberKind == WholeFile || memberKind == CameraMember || memberKind == ScreenMember;
}

bool IsMissingMosk(const std::wstring& path) {
    return LowerExtensionOf(path) == L"mosk" && GetFileAttributesW(path.c_str()) == INVALID_FILE_ATTRIBUTES;
}

boost::shared_ptr<MOSK::Reader> OpenRecording(const std::string& path) {
    return MOSK::Reader::create(path, MOSK::AudioFormat::create16BitSignedInterleaved(44100, 2),
                                /*decoderFactory=*/nullptr);
}

BitmapPtr DecodeMoskTrackFrame(const boost::shared_ptr<MOSK::MP4TrackReader>& track, double time) {
    if (track->kind() != VideoTrack)
        return {};
    BitmapPtr bitmap(new Gdiplus::Bitmap(static_cast<INT>(track->width()), static_cast<INT>(track->height()),
                                         PixelFormat32bppPARGB));
    if (!bitmap)
        return {};
    Gdiplus::BitmapData locked;
    if (bitmap->LockBits(nullptr, Gdiplus::ImageLockModeWrite, bitmap->GetPixelFormat(), &locked) ==
        Gdiplus::Ok) {
        // Deliberate: a frame that can't be decoded leaves the bitmap as it was made, which is transparent.
        (void)track->decodeFrameAtTime(time, static_cast<unsigned char*>(locked.Scan0),
                                       locked.Width * locked.Height * 4, /*actualTime=*/nullptr);
        bitmap->UnlockBits(&locked);
    }
    return bitmap;
}

} // namespace

Gdiplus::Bitmap* GdiplusBitmapThumbnailingHelper::GetThumbnailForMosk(const std::wstring& path, double time,
                                                                      int width, int height, int trackIndex) {
    if (path.empty() || IsMissingMosk(path))
        return nullptr;
    const SourceRecord source = ParseMediaPath(path, static_cast<std::uint32_t>(trackIndex));
    const auto reader = OpenRecording(Utf8FromWide(source.folder + source.containerName));
    if (!reader || !IsShown(source.kind))
        return nullptr;
    BitmapPtr screen;
    BitmapPtr camera;
    for (const auto& track : reader->tracks()) {
        const std::int32_t type = track->typeCode();
        if (type == CameraTrack && source.kind != ScreenMember)
            camera = DecodeMoskTrackFrame(track, time);
        else if (type == ScreenTrack && source.kind != CameraMember)
            screen = DecodeMoskTrackFrame(track, time);
    }
    return ComposeInsetThumbnail(screen, camera, width, height);
}

} // namespace KestoThumbnailer
