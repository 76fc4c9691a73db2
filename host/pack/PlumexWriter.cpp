#include "pack/PlumexWriter.h"

#include "ThumbnailRequest.h"
#include "WholeFiles.h"
#include "pack/CompoundFile.h"
#include "pack/Manifest.h"

#include <KestoThumbnailer/platform/RecordingWriter.h>

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <optional>
#include <system_error>

namespace KestoHost {

namespace {

namespace fs = std::filesystem;

struct Member {
    const char* role;
    const char* name;
    std::optional<MOSK::MemberContainer> container; ///< none for what is taken as it is
};

constexpr std::array<Member, 5> members = {{{"screen", "Screen_Stream.avi", MOSK::MemberContainer::Avi},
                                            {"camera", "Camera_Stream.wmv", MOSK::MemberContainer::Asf},
                                            {"microphone", "Audio.wav", MOSK::MemberContainer::Wav},
                                            {"system-audio", "SysAudio.wav", MOSK::MemberContainer::Wav},
                                            {"events", "Events.dat", std::nullopt}}};
constexpr const char* manifestName = "manifest.plumxml";

const Member& memberOf(const PackPart& part) {
    return *std::find_if(members.begin(), members.end(),
                         [&part](const Member& member) { return part.role == member.role; });
}

/// What is to become a member, in the member's container.
struct Ready {
    PackedPart packed;
    std::string file;
};

/// Nobody has asked for the member's own file: what is wrong with it is wrong with the output.
std::string withOutputFor(const std::string& file, const std::string& message, const std::string& output) {
    return message.starts_with(file) ? output + message.substr(file.size()) : message;
}

/// A failure goes into `failure`.
Ready makeReady(const PackPart& part, const std::string& output, WholeFiles& temporary,
                std::optional<Failure>& failure) {
    const Member& member = memberOf(part);
    if (!member.container || MOSK::IsMemberFile(part.input, *member.container))
        return {{part, member.name, /*isCopied=*/true}, part.input};
    const std::string beside = (fs::path(output).parent_path() / member.name).string();
    Ready ready = {{part, member.name, /*isCopied=*/false}, temporary.pathFor(beside)};
    const MOSK::WriteResult result = MOSK::WriteMemberFile(part.input, *member.container, ready.file);
    if (!result.isWritten)
        failure = Failure{result.reason, withOutputFor(ready.file, result.message, output)};
    return ready;
}

std::optional<Failure> fill(CompoundFile& file, const std::vector<Ready>& all) {
    std::vector<ManifestStream> streams;
    for (const Ready& ready : all) {
        const auto bytes = file.addFile(ready.packed.member, ready.file);
        if (!bytes)
            return file.failure();
        streams.push_back({ready.packed.part.role, ready.packed.member, *bytes});
    }
    if (!file.addText(manifestName, manifestText(streams)) || !file.commit())
        return file.failure();
    return std::nullopt;
}

/// As large as the file is by now; 0 for one that can't be asked.
std::uintmax_t sizeOf(const Ready& ready) {
    std::error_code error;
    const std::uintmax_t size = fs::file_size(ready.file, error);
    return error ? 0 : size;
}

} // namespace

void writePlumex(const std::vector<PackPart>& parts, PackReport& report) {
    WholeFiles temporary; // removed at the end, for it never commits
    std::vector<Ready> all;
    for (const PackPart& part : parts) {
        all.push_back(makeReady(part, report.output, temporary, report.failure));
        if (report.failure)
            return;
        report.parts.push_back(all.back().packed);
    }
    std::uintmax_t largest = 0;
    for (const Ready& ready : all)
        largest = std::max(largest, sizeOf(ready));
    CompoundFile file(report.output, largest);
    report.failure = fill(file, all);
}

} // namespace KestoHost
