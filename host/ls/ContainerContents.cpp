#include "ls/ContainerContents.h"

#include "Paths.h"
#include "ls/MemberRole.h"

#include <KestoThumbnailer/ContainerListing.h>
#include <KestoThumbnailer/platform/FrameCodecDiagnosis.h>
#include <KestoThumbnailer/platform/StructuredStorage.h>

#include <fmt/format.h>

#include <memory>

namespace KestoHost {

namespace {

struct Release {
    void operator()(IUnknown* object) const { object->Release(); }
};
template <typename Interface>
using Reference = std::unique_ptr<Interface, Release>;

Failure failureOfStorage(const std::string& input, HRESULT result) {
    switch (result) {
    case STG_E_FILENOTFOUND:
    case STG_E_PATHNOTFOUND:
    case STG_E_INVALIDNAME:
        return {"missing", fmt::format("{}: there is no such file", input)};
    case STG_E_ACCESSDENIED:
        return {"unreadable",
                fmt::format("{}: cannot be read; a file is expected that may be opened", input)};
    case STG_E_READFAULT:
        return {"unreadable", fmt::format("{}: reading failed", input)};
    case STG_E_INSUFFICIENTMEMORY:
        return {"too-large", fmt::format("{}: has more members than a million", input)};
    default: // any other result of a file that begins like one
        return {"damaged", fmt::format("{}: a compound file, but a damaged one", input)};
    }
}

Failure noContainer(const std::string& input) {
    return {"no-container",
            fmt::format("{}: no container; a compound file (.plumex), or a video, recording (.mosk) or sound "
                        "with tracks is expected",
                        input)};
}

/// Why a file that is there has no tracks.
Failure failureOfMedia(const std::string& input) {
    using FrameCodecLib::NoDecoderReason;
    const FrameCodecLib::DecoderDiagnosis diagnosis =
        FrameCodecLib::DiagnoseDecoder(input, /*streamIndex=*/-1);
    switch (diagnosis.reason) {
    case NoDecoderReason::NothingWrong:
    case NoDecoderReason::UnknownFormat:
    case NoDecoderReason::NoVideo:
    case NoDecoderReason::Unsupported:
        return noContainer(input);
    case NoDecoderReason::Unreadable:
    case NoDecoderReason::Truncated:
    case NoDecoderReason::Damaged:
    case NoDecoderReason::TooLarge:
    case NoDecoderReason::OutOfTime:
        break;
    case NoDecoderReason::Unavailable: // the sentence names what is missing
        return {"unavailable", fmt::format("{}: cannot be looked into: {}", input, diagnosis.sentence)};
    }
    return {FrameCodecLib::WordForReason(diagnosis.reason), diagnosis.sentence};
}

std::vector<ContainerPart> membersOf(IStorage& storage) {
    std::vector<ContainerPart> members;
    IEnumSTATSTG* opened = nullptr;
    if (FAILED(storage.EnumElements(0, nullptr, 0, &opened)))
        return members;
    const Reference<IEnumSTATSTG> elements(opened);
    for (STATSTG element = {}; elements->Next(1, &element, nullptr) == S_OK;) {
        const std::unique_ptr<WCHAR, void (*)(void*)> name(element.pwcsName, CoTaskMemFree);
        ContainerPart& member = members.emplace_back(describeMember(utf8FromWide(name.get())));
        if (element.type == STGTY_STREAM)
            member.size = element.cbSize.QuadPart;
        else
            member = {.name = member.name, .kind = "folder"};
    }
    return members;
}

const char* kindOf(std::int32_t trackKind) {
    return trackKind == 0 ? "video" : trackKind == 1 ? "audio" : "data";
}

const char* roleOf(std::int32_t recordedFrom) {
    constexpr const char* roles[] = {"screen", "camera", "microphone", "system"};
    return recordedFrom >= 100 && recordedFrom < 104 ? roles[recordedFrom - 100] : "";
}

ContainerPart describeTrack(const KestoThumbnailer::ListedTrack& track) {
    ContainerPart part;
    part.kind = kindOf(track.kind);
    part.role = roleOf(track.recordedFrom);
    part.format = track.format;
    part.width = static_cast<int>(track.width);
    part.height = static_cast<int>(track.height);
    if (track.seconds >= 0)
        part.seconds = track.seconds;
    return part;
}

void listTracks(const std::wstring& path, ContainerContents& contents) {
    const KestoThumbnailer::TrackListing listing = KestoThumbnailer::ListTracks(path);
    contents.container = listing.container;
    for (const KestoThumbnailer::ListedTrack& track : listing.tracks)
        contents.parts.push_back(describeTrack(track));
    if (contents.parts.empty())
        contents.failure = failureOfMedia(contents.input);
}

} // namespace

ContainerContents contentsOf(const std::string& input) {
    ContainerContents contents{.input = input};
    const auto path = wideFromUtf8(input);
    if (!path) {
        contents.failure = Failure{"bad-name", fmt::format("{}: a name in UTF-8 is expected", input)};
        return contents;
    }
    void* object = nullptr;
    const HRESULT opened = StgOpenStorageEx(path->c_str(), STGM_READ | STGM_SHARE_DENY_WRITE, STGFMT_ANY, 0,
                                            nullptr, nullptr, IID_IStorage, &object);
    const Reference<IStorage> storage(static_cast<IStorage*>(object));
    if (storage) {
        contents.container = "plumex";
        contents.partKind = PartKind::Members;
        contents.parts = membersOf(*storage);
    } else if (opened == STG_E_FILEALREADYEXISTS) { // it is there, but no compound file
        listTracks(*path, contents);
    } else {
        contents.failure = failureOfStorage(input, opened);
    }
    return contents;
}

} // namespace KestoHost
