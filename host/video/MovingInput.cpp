#include "video/MovingInput.h"

#include "LetterCase.h"
#include "Paths.h"
#include "SourceKind.h"
#include "video/GifFrame.h"
#include "video/RecordingPicture.h"

#include <KestoThumbnailer/ThumbnailDiagnosis.h>
#include <KestoThumbnailer/platform/FrameCodecDiagnosis.h>
#include <KestoThumbnailer/platform/Gdiplus.h>
#include <KestoThumbnailer/platform/StructuredStorage.h>

#include <fmt/format.h>

#include <string_view>

namespace KestoHost {

namespace {

using FrameCodecLib::NoDecoderReason;
using KestoThumbnailer::NoThumbnailReason;

bool isDocument(const std::string& input) {
    return sourceKindOf(input).word == std::string_view("pdf");
}

/// By its header alone.
bool isPicture(const std::wstring& path) {
    Gdiplus::Bitmap picture(path.c_str());
    return picture.GetLastStatus() == Gdiplus::Ok;
}

NoThumbnailReason diagnosedReason(const std::wstring& path) {
    return KestoThumbnailer::DiagnoseStillImage(path).reason;
}

/// As is a recording with its streams in it.
bool isCompoundFile(const std::wstring& path) {
    void* storage = nullptr;
    const HRESULT opened = StgOpenStorageEx(path.c_str(), STGM_READ | STGM_SHARE_DENY_WRITE, STGFMT_ANY, 0,
                                            nullptr, nullptr, IID_IStorage, &storage);
    if (FAILED(opened))
        return false;
    static_cast<IStorage*>(storage)->Release();
    return true;
}

/// Those that are the same for any kind of content.
bool isAboutTheFile(NoThumbnailReason reason) {
    return reason == NoThumbnailReason::Missing || reason == NoThumbnailReason::NotAFile ||
           reason == NoThumbnailReason::Unreadable || reason == NoThumbnailReason::Empty;
}

} // namespace

bool isProjectFile(const std::string& input) {
    constexpr std::string_view projectEnding = ".qrlproj";
    return lowerCase(input).ends_with(projectEnding);
}

InputKind inputKindOf(const std::string& input) {
    if (isProjectFile(input))
        return InputKind::Project;
    const std::wstring path = *wideFromUtf8(input);
    if (isDocument(input) || isPicture(path))
        return InputKind::Still;
    if (diagnosedReason(path) != NoThumbnailReason::UnknownFormat)
        return InputKind::Still;
    return isRecordingFile(input) ? InputKind::Recording : InputKind::Video;
}

bool asksForMoment(const ThumbnailRequest& request) {
    return request.isTimeAsked && isAnimatedGif(request.input);
}

InputKind inputKindOf(const ThumbnailRequest& request) {
    return asksForMoment(request) ? InputKind::Animation : inputKindOf(request.input);
}

const char* wordOf(InputKind kind, const std::string& input) {
    switch (kind) {
    case InputKind::Still:
        return sourceKindOf(input).word;
    case InputKind::Video:
        return "video";
    case InputKind::Recording:
        return "recording";
    case InputKind::Project:
        return "project";
    case InputKind::Animation:
        return "animation";
    }
    return "";
}

std::optional<Failure> refusalOfCompoundFile(const std::string& input) {
    if (!isCompoundFile(*wideFromUtf8(input)))
        return std::nullopt;
    return Failure{FrameCodecLib::WordForReason(NoDecoderReason::Unsupported),
                   fmt::format("\"{}\" is a compound file: its streams can be listed, but not shown.", input),
                   /*withoutPicture=*/true};
}

Failure whyNoVideo(const std::string& input, int stream) {
    const auto file = KestoThumbnailer::DiagnoseStillImage(*wideFromUtf8(input));
    if (isAboutTheFile(file.reason))
        return {KestoThumbnailer::WordForReason(file.reason), file.sentence, /*withoutPicture=*/true};
    const auto video = FrameCodecLib::DiagnoseDecoder(input, stream);
    const std::string word = FrameCodecLib::WordForReason(video.reason);
    if (video.reason == NoDecoderReason::UnknownFormat)
        return {word,
                fmt::format("\"{}\" is no picture, document, video or project that can be read.", input),
                /*withoutPicture=*/true};
    return {word, video.sentence, /*withoutPicture=*/true};
}

} // namespace KestoHost
